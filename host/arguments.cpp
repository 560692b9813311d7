#include "arguments.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <memory>
#include <span>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "commands.h"
#include "declarations.h"
#include "picture_io.h"
#include "temporary_file.h"

namespace {

void AddList(CLI::App* program, Command& command) {
  auto options = std::make_shared<ListOptions>();
  CLI::App* list = program->add_subcommand("list", "Lists the looks: title, name, description");
  list->add_option("--category", options->category, "Only the looks of this category")
      ->type_name("CATEGORY");
  list->add_flag("--json", options->json,
                 "As JSON: an array of objects with name, title, category and description");
  list->callback([&command, options] { command = [options] { return List(*options); }; });
}

// Four whole numbers between commas.
_ZV_2D_RECT AreaOf(const std::string& text) {
  std::istringstream in(text);
  _ZV_2D_RECT area{};
  char commas[3] = {};
  in >> area.x >> commas[0] >> area.y >> commas[1] >> area.width >> commas[2] >> area.height;
  const bool read = !in.fail() && in.peek() == std::istringstream::traits_type::eof() &&
                    std::ranges::all_of(commas, [](char c) { return c == ','; });
  if (!read || area.x < 0 || area.y < 0 || area.width < 1 || area.height < 1)
    throw CLI::ValidationError("--crop", "'" + text + "' is no part of a picture");
  return area;
}

// Two whole numbers around a slash.
Shard ShardOf(const std::string& text) {
  std::istringstream in(text);
  Shard shard;
  char slash = 0;
  in >> shard.index >> slash >> shard.count;
  const bool read =
      !in.fail() && in.peek() == std::istringstream::traits_type::eof() && slash == '/';
  if (!read || shard.index < 1 || shard.index > shard.count)
    throw CLI::ValidationError("--shard", "'" + text + "' is none of 1/N to N/N");
  return shard;
}

// A range that not-a-number is not in.
CLI::Validator Between(double low, double high) {
  std::ostringstream range;
  range << "in [" << low << " - " << high << "]";
  return {[=, text = range.str()](std::string& input) {
            double value = 0;
            const bool read = CLI::detail::lexical_cast(input, value);
            return read && value >= low && value <= high ? std::string()
                                                         : "Value " + input + " not " + text;
          },
          "FLOAT " + range.str()};
}

// How files are written.
void AddQuality(CLI::App* app, SaveOptions& save) {
  app->add_option("--quality", save.quality,
                  "Of formats that lose a little, 1 to 100 (by default what nobody sees)")
      ->check(CLI::Range(1, 100));
  app->add_option("--effort", save.effort,
                  "0 writes fast, 9 makes files small (by default a few seconds at most)")
      ->check(CLI::Range(0, 9));
  app->add_flag("--progressive", save.progressive,
                "JPEG and PNG files that show coarsely while they load");
}

// What all commands take that read pictures and write them.
void AddRun(CLI::App* app, RunOptions& options) {
  app->add_option(
      "-o,--output", options.output,
      "The file to write, or - for standard output; for several pictures a folder, which is made "
      "if it is missing");
  app->add_option("--suffix", options.rules.suffix,
                  "Goes behind the names of results, which lie beside their originals without "
                  "--output: -toned makes a-toned.jpg of a.jpg");
  app->add_option(
      "--format", options.rules.format,
      "Extension of many results, like .jpg; by default each keeps that of its picture. Standard "
      "output needs one");
  app->add_flag("--skip-existing", options.rules.skipExisting,
                "Leave out pictures whose result exists");
  app->add_option_function<std::string>(
         "--shard", [&options](const std::string& text) { options.rules.shard = ShardOf(text); },
         "Only the K-th of N parts of the pictures, so that N machines do all of them")
      ->type_name("K/N");
  app->add_flag("--overwrite-input", options.rules.overwriteInput,
                "Let results replace their originals");
  app->add_flag("--allow-loss", options.allowLoss,
                "Even where the result holds less: pages, 16 bits, inks");
  app->add_flag("--keep-times", options.keepTimes,
                "Results get the modification times of their originals");
  app->add_flag("--dry-run", options.dryRun, "Only tell what would be written");
  app->add_flag("--json", options.json,
                "Tell of each picture on standard output, in a line of JSON: input, output, status "
                "(written, existed, failed or planned), and what there is of reason, losses, "
                "width, height, pages and seconds");
  AddQuality(app, options.save);
  const auto strip = [app, &options](const char* name, Metadata::Strip what, const char* meaning) {
    return app->add_flag_callback(
        name, [=, &options] { options.load.strip = what; }, meaning);
  };
  strip("--strip", Metadata::Strip::All, "Write no EXIF, XMP and IPTC records")
      ->excludes(strip("--strip-gps", Metadata::Strip::Places, "Write no places in the records"));
  app->add_option("--jobs", options.jobs,
                  "Pictures at the same time (by default one per processor, at most 4)")
      ->check(CLI::Range(1, 256));
  app->add_option("--threads", options.threads,
                  "Threads per picture (by default an equal share of the processors)")
      ->check(CLI::Range(1, 1024));
  app->add_option("--max-pixels", options.load.maxPixels, "Pictures with more pixels are refused")
      ->check(CLI::PositiveNumber)
      ->capture_default_str();
  app->footer("The format of a file is that of its extension: " + WritableExtensions() + R"(
Colours are converted to sRGB, the picture is turned upright, and its records are kept. Pages and
frames are all worked where the output's format has them. A picture with transparency is laid over
white if the format has none. Existing outputs are replaced, inputs only with --overwrite-input. The
exit code is 0 if every picture was written, 1 if some were not, and 2 if nothing was begun.)");
}

void AddApply(CLI::App* program, Command& command) {
  auto options = std::make_shared<ApplyOptions>();
  CLI::App* apply = program->add_subcommand("apply", "Gives pictures a look");
  auto look = std::make_shared<std::string>();
  auto more = std::make_shared<std::vector<std::string>>();
  apply->add_option(
      "LOOK", *look,
      "Its title or name, as 'tintwerk list' shows them: 'faded memory', faded-memory, HuiYi");
  apply->add_option("INPUT", options->inputs,
                    "Pictures, or folders of pictures; - for standard input");
  apply->add_option("--then", *more, "Another look after the first; may be given several times")
      ->type_name("LOOK")
      ->allow_extra_args(false);
  apply->add_option("--cube", options->cube,
                    "A colour cube instead of a look: a .cube file or a HaldCLUT picture. Pictures "
                    "of 16 bits keep them where the output's format has them");
  apply->add_flag("--trilinear", options->trilinear,
                  "Interpolate the cube between all eight nodes around a colour; by default "
                  "tetrahedrally, which keeps greys grey");
  apply
      ->add_option("--strength", options->strength,
                   "Percent: 0 leaves the picture as it is, 100 is the full look")
      ->check(Between(0, 100))
      ->capture_default_str();
  apply
      ->add_option_function<std::string>(
          "--crop", [options](const std::string& text) { options->crop = AreaOf(text); },
          "Writes only this part of the result, in pixels of the upright picture, as it is on the "
          "whole; a few drawn looks can")
      ->type_name("X,Y,WIDTH,HEIGHT");
  apply
      ->add_option("--resources", options->resources,
                   "The folder that holds Effects, the support files")
      ->type_name("FOLDER");
  AddRun(apply, *options);
  apply->callback([&command, options, look, more] {
    if (!options->cube.empty() && !look->empty())
      options->inputs.insert(options->inputs.begin(), std::exchange(*look, {}));
    if (options->cube.empty() && look->empty()) throw CLI::RequiredError("LOOK");
    if (!options->cube.empty() && !more->empty())
      throw CLI::ValidationError("--then", "follows a look, not a cube");
    if (options->inputs.empty()) throw CLI::RequiredError("INPUT");
    if (!look->empty()) options->looks.push_back(*look);
    options->looks.insert(options->looks.end(), more->begin(), more->end());
    command = [options] { return Apply(*options); };
  });
}

void AddBlend(CLI::App* program, Command& command) {
  auto options = std::make_shared<BlendOptions>();
  CLI::App* blend = program->add_subcommand("blend", "Blends a picture over others");
  blend
      ->add_option("MODE", options->mode,
                   "screen, multiply, overlay and so on; an unknown one gets the list")
      ->required();
  blend
      ->add_option("BASE... TOP", options->inputs,
                   "The lower pictures or folders of them, whose transparency stays, and last the "
                   "upper picture, which is scaled to their sizes")
      ->required()
      ->expected(2, -1);
  AddRun(blend, *options);
  blend->footer("Only the mode normal uses the upper picture's transparency.\n" +
                blend->get_footer());
  blend->callback([&command, options] {
    options->top = options->inputs.back();
    options->inputs.pop_back();
    command = [options] { return Blend(*options); };
  });
}

void AddParameter(CLI::App* app, const Parameter& parameter, double& value) {
  const std::string option = "--" + std::string(parameter.name), meaning(parameter.meaning);
  if (parameter.names.empty()) {
    CLI::Option* const number = app->add_option(option, value, meaning)
                                    ->check(Between(parameter.low, parameter.high))
                                    ->capture_default_str();
    if (parameter.whole) {
      number->type_name("INT")->check([](const std::string& text) {
        return std::fmod(std::strtod(text.c_str(), nullptr), 1) == 0 ? std::string()
                                                                     : text + " is no whole number";
      });
    }
    return;
  }
  const std::vector<std::string> names(parameter.names.begin(), parameter.names.end());
  const auto take = [names, &value](const std::string& name) {
    value = static_cast<double>(std::ranges::find(names, name) - names.begin());
  };
  app->add_option_function<std::string>(option, take, meaning)
      ->transform(CLI::IsMember(names, CLI::ignore_case))
      ->default_str(names[static_cast<std::size_t>(value)]);
}

void AddFilter(CLI::App* program, Command& command) {
  CLI::App* filter = program->add_subcommand("filter", "Applies one operation to pictures");
  filter->require_subcommand(1);
  for (const FilterOperation& operation : AllFilterOperations()) {
    auto options = std::make_shared<FilterOptions>();
    options->operation = &operation;
    options->values.reserve(operation.parameters.size());
    CLI::App* app =
        filter->add_subcommand(std::string(operation.name), std::string(operation.description));
    for (const Parameter& parameter : operation.parameters)
      AddParameter(app, parameter, options->values.emplace_back(parameter.standard));
    app->add_option("INPUT", options->inputs,
                    "Pictures, or folders of pictures; - for standard input")
        ->required();
    AddRun(app, *options);
    app->callback([&command, options] { command = [options] { return Filter(*options); }; });
  }
}

void AddCube(CLI::App* program, Command& command) {
  CLI::App* cube = program->add_subcommand("cube", "Imports and exports colour cubes");
  cube->require_subcommand(1);

  auto packing = std::make_shared<CubePackOptions>();
  CLI::App* pack = cube->add_subcommand("pack", "Packs a cube into a support file of the library");
  pack->add_option("INPUT", packing->input, "A .cube file or a HaldCLUT picture")->required();
  pack->add_option("-o,--output", packing->output, "The support file to write")->required();
  pack->add_option("--layout", packing->layout,
                   "Nodes along each axis: new, 16 from 0 to 255; 4x4, 16 from 0 to 240; 8x8, 64 "
                   "from 0 to 252")
      ->check(CLI::IsMember({"new", "4x4", "8x8"}))
      ->capture_default_str();
  pack->callback([&command, packing] { command = [packing] { return PackCubeFile(*packing); }; });

  auto exporting = std::make_shared<CubeExportOptions>();
  CLI::App* out = cube->add_subcommand("export", "Writes a look as a cube for other tools");
  out->add_option("LOOK", exporting->look, "Its title or name, as 'tintwerk list' shows them")
      ->required();
  out->add_option("-o,--output", exporting->output,
                  "The file to write: .cube, or .png for a HaldCLUT picture")
      ->required();
  out->add_option("--size", exporting->size, "Nodes along each axis of a .cube file")
      ->check(CLI::Range(2, 256))
      ->capture_default_str();
  out->add_option("--level", exporting->level,
                  "Level of a HaldCLUT; its square is the nodes along each axis")
      ->check(CLI::Range(2, 16))
      ->capture_default_str();
  out->add_option("--tolerance", exporting->tolerance,
                  "Levels of 255 by which the cube may differ from the look")
      ->check(CLI::Range(0, 255))
      ->capture_default_str();
  out->add_option("--resources", exporting->resources,
                  "The folder that holds Effects, the support files")
      ->type_name("FOLDER");
  out->footer(
      "The look must treat each pixel by its colour alone; others are refused with the reason.");
  out->callback(
      [&command, exporting] { command = [exporting] { return ExportCube(*exporting); }; });
}

void AddGallery(CLI::App* program, Command& command) {
  auto options = std::make_shared<GalleryOptions>();
  CLI::App* gallery = program->add_subcommand(
      "gallery", "Makes a page for the browser that shows every look on a photo");
  gallery->add_option("PHOTO", options->input, "A picture")->required();
  gallery
      ->add_option("-o,--output", options->output,
                   "The folder for index.html and its pictures, which is made if it is missing")
      ->required();
  gallery->add_option("--size", options->size, "Pixels of the longer side of the pictures, at most")
      ->check(CLI::Range(100, 8192))
      ->capture_default_str();
  gallery->add_option("--quality", options->quality, "Of the pictures, 1 to 100")
      ->check(CLI::Range(1, 100))
      ->capture_default_str();
  gallery
      ->add_option("--jobs", options->jobs, "Looks at the same time (by default one per processor)")
      ->check(CLI::Range(1, 256));
  gallery
      ->add_option("--resources", options->resources,
                   "The folder that holds Effects, the support files")
      ->type_name("FOLDER");
  gallery->footer(
      "The page can be opened at once; pictures appear on it as they are painted. It needs no "
      "network,\nand holds nothing of the photo's EXIF, XMP and IPTC records.");
  gallery->callback([&command, options] { command = [options] { return Gallery(*options); }; });
}

void AddSheet(CLI::App* program, Command& command) {
  auto options = std::make_shared<SheetOptions>();
  CLI::App* sheet = program->add_subcommand(
      "sheet", "Makes one picture that shows every look on a photo, with titles");
  sheet->add_option("PHOTO", options->input, "A picture")->required();
  sheet->add_option("-o,--output", options->output, "The file to write")->required();
  sheet->add_option("--category", options->category, "Only the looks of this category")
      ->type_name("CATEGORY");
  sheet->add_option("--tile", options->tile, "Pixels of the longer side of each look's picture")
      ->check(CLI::Range(50, 2000))
      ->capture_default_str();
  sheet->add_option("--columns", options->columns, "Pictures side by side")
      ->check(CLI::Range(1, 50))
      ->capture_default_str();
  AddQuality(sheet, options->save);
  sheet
      ->add_option("--jobs", options->jobs, "Looks at the same time (by default one per processor)")
      ->check(CLI::Range(1, 256));
  sheet
      ->add_option("--resources", options->resources,
                   "The folder that holds Effects, the support files")
      ->type_name("FOLDER");
  sheet->callback([&command, options] { command = [options] { return Sheet(*options); }; });
}

void AddScene(CLI::App* program, Command& command) {
  auto options = std::make_shared<SceneOptions>();
  CLI::App* scene = program->add_subcommand(
      "scene", "Writes a test picture for looks: skin, sky, leaves, water, stone, fruit");
  scene->add_option("-o,--output", options->output, "The file to write")->required();
  scene->add_option("--width", options->width, "Pixels")
      ->check(CLI::Range(1, 16384))
      ->capture_default_str();
  scene->add_option("--height", options->height, "Pixels")
      ->check(CLI::Range(1, 16384))
      ->capture_default_str();
  scene->callback([&command, options] { command = [options] { return Scene(*options); }; });
}

// The first word that names no subcommand, with the command that it should belong to.
std::pair<CLI::App*, std::string> UnknownWord(CLI::App& program,
                                              std::span<const std::string> words) {
  CLI::App* app = &program;
  for (const std::string& word : words) {
    const auto known = app->get_subcommands([](CLI::App*) { return true; });
    if (known.empty() || word.starts_with('-')) return {};
    const auto next = std::ranges::find(known, word, [](CLI::App* one) { return one->get_name(); });
    if (next == known.end()) return {app, word};
    app = *next;
  }
  return {};
}

// For the scripts of shells, which call it as: complete -- WORDS
Command Complete(const CLI::App& program, std::vector<std::string> words) {
  words.erase(words.begin(), words.begin() + std::min<std::ptrdiff_t>(2, std::ssize(words)));
  return [lines = Completions(program, std::move(words))] {
    for (const std::string& line : lines) std::printf("%s\n", line.c_str());
    return kDone;
  };
}

// For the build, which installs the pages.
Command WriteManual(const CLI::App& program, const std::filesystem::path& folder) {
  return [pages = ManualPages(program), folder] {
    std::filesystem::create_directories(folder);
    for (const auto& [name, text] : pages)
      WriteWhole(folder / name, {reinterpret_cast<const unsigned char*>(text.data()), text.size()});
    return kDone;
  };
}

}  // namespace

Command ParseArguments(int argc, const char* const* argv) {
  CLI::App program("Gives pictures the looks of the Tintwerk library.", "tintwerk");
  program.set_version_flag("-V,--version", "tintwerk " TINTWERK_VERSION);
  program.require_subcommand(1);
  Command command;
  AddList(&program, command);
  AddApply(&program, command);
  AddBlend(&program, command);
  AddFilter(&program, command);
  AddCube(&program, command);
  AddGallery(&program, command);
  AddSheet(&program, command);
  AddScene(&program, command);

  std::vector<std::string> words(argv + 1, argv + argc);
  if (!words.empty() && words.front() == "complete") return Complete(program, std::move(words));
  if (words.size() == 2 && words.front() == "manual") return WriteManual(program, words.back());
  if (words.empty()) words = {"--help"};
  if (words.front() == "help") {  // help COMMAND is COMMAND --help
    words.erase(words.begin());
    words.push_back("--help");
  }
  if (const auto [app, word] = UnknownWord(program, words); app) {
    std::vector<std::string> names;
    for (const CLI::App* one : app->get_subcommands([](CLI::App*) { return true; }))
      names.push_back(one->get_name());
    throw Refusal(NothingIsCalled(app == &program ? "command" : app->get_name(), word, names));
  }
  // Brackets around a word make a list of it, which no name of a file is.
  for (std::string& word : words)
    if (word.starts_with('[')) word.insert(0, "./");
  try {
    std::ranges::reverse(words);
    program.parse(words);
  } catch (const CLI::ParseError& error) {
    const int code = program.exit(error) == 0 ? kDone : kRefused;
    return [code] { return code; };
  }
  return command;
}
