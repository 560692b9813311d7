#include "arguments.h"

#include <CLI/CLI.hpp>
#include <memory>
#include <utility>

#include "blend_modes.h"
#include "commands.h"
#include "picture_io.h"

namespace {

void AddList(CLI::App* program, Command& command) {
  auto options = std::make_shared<ListOptions>();
  CLI::App* list = program->add_subcommand("list", "Lists the looks: name, family, description");
  list->add_flag("--json", options->json,
                 "As JSON: an array of objects with name, family and description");
  list->callback([&command, options] { command = [options] { return List(*options); }; });
}

void AddApply(CLI::App* program, Command& command) {
  auto options = std::make_shared<ApplyOptions>();
  CLI::App* apply = program->add_subcommand("apply", "Gives pictures a look");
  apply->add_option("LOOK", options->look,
                    "Its name, as 'tintwerk list' shows it; 'Effect_' may be left out");
  apply->add_option("INPUT", options->inputs, "Pictures, or folders of pictures");
  apply->add_option("--cube", options->cube,
                    "In a look's place, a colour cube: a .cube file or a HaldCLUT picture. It is "
                    "brought to 64 levels of bytes, which may move a value by 1, near white by 3");
  apply
      ->add_option("-o,--output", options->output,
                   "The file to write; for several pictures the folder, which is made if missing")
      ->required();
  apply->add_option(
      "--format", options->rules.format,
      "Extension of the files in an output folder, like .jpg; without, each keeps its own");
  apply->add_flag("--skip-existing", options->rules.skipExisting,
                  "Leave pictures out whose output is there");
  apply->add_flag("--overwrite-input", options->rules.overwriteInput,
                  "Let an output replace the picture that it is made from");
  apply
      ->add_option("--strength", options->strength,
                   "0 leaves the picture as it was, 100 is the full look")
      ->check(CLI::Range(0.0, 100.0))
      ->capture_default_str();
  apply->add_option("--resources", options->resources,
                    "Folder of the support files, in which Effects lies");
  apply->add_option("--jobs", options->jobs, "Pictures at work side by side (at most 4 by default)")
      ->check(CLI::Range(1, 256));
  apply
      ->add_option("--threads", options->threads,
                   "Threads of each job (the processors by default, shared out)")
      ->check(CLI::Range(1, 1024));
  apply->footer("The format of a file is that of its extension: " + WritableExtensions() + R"(
Colours become sRGB, the picture is turned upright, and EXIF and XMP stay. Transparency stays where
the format has it and is laid over white elsewhere. Existing outputs are replaced, inputs only with
--overwrite-input. The exit code is 0 if every picture was written, 1 if some were not, and 2 if
nothing was begun.)");
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
  CLI::App* blend = program->add_subcommand("blend", "Lays a picture over another by a blend mode");
  blend->add_option("MODE", options->mode, "One of: " + BlendModeNames())->required();
  blend->add_option("BASE", options->base, "The picture below; its transparency stays")->required();
  blend->add_option("TOP", options->top, "The picture above, scaled to the size of the other")
      ->required();
  blend->add_option("-o,--output", options->output, "The file to write")->required();
  blend->footer("The mode normal takes the upper picture's transparency as its opacity.");
  blend->callback([&command, options] { command = [options] { return Blend(*options); }; });
}

void AddFilter(CLI::App* program, Command& command) {
  CLI::App* filter = program->add_subcommand("filter", "Works a picture by one operation");
  filter->require_subcommand(1);
  for (const FilterOperation& operation : AllFilterOperations()) {
    auto options = std::make_shared<FilterOptions>();
    options->operation = &operation;
    options->values.reserve(operation.parameters.size());
    CLI::App* app =
        filter->add_subcommand(std::string(operation.name), std::string(operation.description));
    for (const Parameter& parameter : operation.parameters)
      app->add_option("--" + std::string(parameter.name),
                      options->values.emplace_back(parameter.standard),
                      std::string(parameter.meaning))
          ->check(CLI::Range(parameter.low, parameter.high))
          ->capture_default_str();
    app->add_option("INPUT", options->input, "The picture")->required();
    app->add_option("-o,--output", options->output, "The file to write")->required();
    app->add_flag("--overwrite-input", options->overwriteInput,
                  "Let the output replace the picture");
    app->callback([&command, options] { command = [options] { return Filter(*options); }; });
  }
}

void AddCube(CLI::App* program, Command& command) {
  CLI::App* cube = program->add_subcommand("cube", "Takes colour cubes in and out");
  cube->require_subcommand(1);

  auto packing = std::make_shared<CubePackOptions>();
  CLI::App* pack = cube->add_subcommand("pack", "Packs a cube into a container of the library");
  pack->add_option("INPUT", packing->input, "A .cube file or a HaldCLUT picture")->required();
  pack->add_option("-o,--output", packing->output, "The container to write")->required();
  pack->add_option(
          "--layout", packing->layout,
          "new: 16 levels at 0, 17 .. 255; 4x4: 16 at 0, 16 .. 240; 8x8: 64 at 0, 4 .. 252")
      ->check(CLI::IsMember({"new", "4x4", "8x8"}))
      ->capture_default_str();
  pack->callback([&command, packing] { command = [packing] { return PackCubeFile(*packing); }; });

  auto exporting = std::make_shared<CubeExportOptions>();
  CLI::App* out = cube->add_subcommand("export", "Writes a look as a cube for other tools");
  out->add_option("LOOK", exporting->look, "Its name, as 'tintwerk list' shows it")->required();
  out->add_option("-o,--output", exporting->output,
                  "The file to write: .cube, or .png for a HaldCLUT picture")
      ->required();
  out->add_option("--size", exporting->size, "Nodes an axis of a .cube file")
      ->check(CLI::Range(2, 256))
      ->capture_default_str();
  out->add_option("--level", exporting->level,
                  "Level of a HaldCLUT: its square is the nodes an axis")
      ->check(CLI::Range(2, 16))
      ->capture_default_str();
  out->add_option("--resources", exporting->resources,
                  "Folder of the support files, in which Effects lies");
  out->footer("A look must be a function of the pixel alone; others are refused with the reason.");
  out->callback(
      [&command, exporting] { command = [exporting] { return ExportCube(*exporting); }; });
}

void AddScene(CLI::App* program, Command& command) {
  auto options = std::make_shared<SceneOptions>();
  CLI::App* scene = program->add_subcommand(
      "scene", "Writes a picture to try looks on: skin, sky, leaves, water, stone, fruit");
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
  CLI::App program("Gives pictures the looks of the Tintwerk effects.", "tintwerk");
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
