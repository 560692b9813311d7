#include "arguments.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "blend_modes.h"
#include "commands.h"
#include "picture_io.h"

namespace {

void AddList(CLI::App* program, Command& command) {
  auto options = std::make_shared<ListOptions>();
  CLI::App* list = program->add_subcommand("list", "Lists the looks: title, name, description");
  list->add_option("--category", options->category, "Only the looks of this category");
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

void AddApply(CLI::App* program, Command& command) {
  auto options = std::make_shared<ApplyOptions>();
  CLI::App* apply = program->add_subcommand("apply", "Gives pictures a look");
  apply->add_option(
      "LOOK", options->look,
      "Its title or name, as 'tintwerk list' shows them: 'faded memory', faded-memory, HuiYi");
  apply->add_option("INPUT", options->inputs, "Pictures, or folders of pictures");
  apply->add_option(
      "--cube", options->cube,
      "A colour cube instead of a look: a .cube file or a HaldCLUT picture. It is "
      "reduced to 64 levels of bytes, which changes values by up to 1, near white by 3");
  apply
      ->add_option(
          "-o,--output", options->output,
          "The file to write; for several pictures a folder, which is made if it is missing")
      ->required();
  apply->add_option(
      "--format", options->rules.format,
      "Extension of the files in an output folder, like .jpg; by default each keeps its own");
  apply->add_flag("--skip-existing", options->rules.skipExisting,
                  "Leave out pictures whose output exists");
  apply->add_flag("--overwrite-input", options->rules.overwriteInput,
                  "Let outputs replace their inputs");
  apply
      ->add_option("--strength", options->strength,
                   "Percent: 0 leaves the picture as it is, 100 is the full look")
      ->check(CLI::Range(0.0, 100.0))
      ->capture_default_str();
  apply
      ->add_option_function<std::string>(
          "--crop", [options](const std::string& text) { options->crop = AreaOf(text); },
          "Writes only this part of the result, in pixels of the upright picture, as it is on the "
          "whole; a few drawn looks can")
      ->type_name("X,Y,WIDTH,HEIGHT");
  apply->add_option("--resources", options->resources,
                    "The folder that holds Effects, the support files");
  apply
      ->add_option("--jobs", options->jobs,
                   "Pictures at the same time (by default one per processor, at most 4)")
      ->check(CLI::Range(1, 256));
  apply
      ->add_option("--threads", options->threads,
                   "Threads per picture (by default an equal share of the processors)")
      ->check(CLI::Range(1, 1024));
  apply->footer("The format of a file is that of its extension: " + WritableExtensions() + R"(
Colours are converted to sRGB, the picture is turned upright, and EXIF and XMP are kept. A picture
with transparency is laid over white if the format has none. Existing outputs are replaced, inputs
only with --overwrite-input. The exit code is 0 if every picture was written, 1 if some were not,
and 2 if nothing was started.)");
  apply->callback([&command, options] {
    if (!options->cube.empty() && !options->look.empty())
      options->inputs.insert(options->inputs.begin(), std::exchange(options->look, {}));
    if (options->cube.empty() && options->look.empty()) throw CLI::RequiredError("LOOK");
    if (options->inputs.empty()) throw CLI::RequiredError("INPUT");
    command = [options] { return Apply(*options); };
  });
}

void AddBlend(CLI::App* program, Command& command) {
  auto options = std::make_shared<BlendOptions>();
  CLI::App* blend = program->add_subcommand("blend", "Blends a picture over another");
  blend->add_option("MODE", options->mode, "One of: " + BlendModeNames())->required();
  blend->add_option("BASE", options->base, "The lower picture; its transparency stays")->required();
  blend->add_option("TOP", options->top, "The upper picture, scaled to the size of the lower")
      ->required();
  blend->add_option("-o,--output", options->output, "The file to write")->required();
  blend->footer("Only the mode normal uses the upper picture's transparency.");
  blend->callback([&command, options] { command = [options] { return Blend(*options); }; });
}

void AddParameter(CLI::App* app, const Parameter& parameter, double& value) {
  const std::string option = "--" + std::string(parameter.name), meaning(parameter.meaning);
  if (parameter.names.empty()) {
    app->add_option(option, value, meaning)
        ->check(CLI::Range(parameter.low, parameter.high))
        ->capture_default_str();
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
  CLI::App* filter = program->add_subcommand("filter", "Applies one operation to a picture");
  filter->require_subcommand(1);
  for (const FilterOperation& operation : AllFilterOperations()) {
    auto options = std::make_shared<FilterOptions>();
    options->operation = &operation;
    options->values.reserve(operation.parameters.size());
    CLI::App* app =
        filter->add_subcommand(std::string(operation.name), std::string(operation.description));
    for (const Parameter& parameter : operation.parameters)
      AddParameter(app, parameter, options->values.emplace_back(parameter.standard));
    app->add_option("INPUT", options->input, "The picture")->required();
    app->add_option("-o,--output", options->output, "The file to write")->required();
    app->add_flag("--overwrite-input", options->overwriteInput, "Let the output replace the input");
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
  out->add_option("--resources", exporting->resources,
                  "The folder that holds Effects, the support files");
  out->footer(
      "The look must treat each pixel by its colour alone; others are refused with the reason.");
  out->callback(
      [&command, exporting] { command = [exporting] { return ExportCube(*exporting); }; });
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

}  // namespace

Command ParseArguments(int argc, const char* const* argv) {
  CLI::App program("Gives pictures the looks of the Tintwerk library.", "tintwerk");
  program.set_version_flag("--version", "tintwerk " TINTWERK_VERSION);
  program.require_subcommand(1);
  Command command;
  AddList(&program, command);
  AddApply(&program, command);
  AddBlend(&program, command);
  AddFilter(&program, command);
  AddCube(&program, command);
  AddScene(&program, command);
  try {
    program.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    const int code = program.exit(error) == 0 ? kDone : kRefused;
    return [code] { return code; };
  }
  return command;
}
