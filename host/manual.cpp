// Manual pages of the command.
#include <algorithm>
#include <cctype>
#include <set>
#include <string_view>

#include "declarations.h"
#include "looks.h"

namespace {

using Options = std::vector<const CLI::Option*>;

// Text as the formatter takes it: no line begins with a request, and hyphens can be searched and copied.
std::string Text(std::string_view text) {
  std::string safe;
  for (const char c : text) {
    if ((c == '.' || c == '\'') && (safe.empty() || safe.back() == '\n')) safe += "\\&";
    safe += c == '\\' ? "\\e" : c == '-' ? "\\-" : std::string(1, c);
  }
  return safe;
}

std::string Bold(std::string_view text) {
  return "\\fB" + Text(text) + "\\fR";
}

std::string Italic(std::string_view text) {
  return "\\fI" + Text(text) + "\\fR";
}

std::vector<const CLI::App*> CommandsOf(const CLI::App& app) {
  return app.get_subcommands([](const CLI::App*) { return true; });
}

// "tintwerk filter blur"
std::string FullName(const CLI::App& app) {
  return app.get_parent() ? FullName(*app.get_parent()) + " " + app.get_name() : app.get_name();
}

std::string PageName(const CLI::App& app) {
  std::string name = FullName(app);
  std::ranges::replace(name, ' ', '-');
  return name;
}

std::string Head(const CLI::App& app) {
  std::string capitals = PageName(app), description = app.get_description();
  for (char& c : capitals) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  while (description.ends_with('.')) description.pop_back();
  if (!description.empty())
    description[0] = static_cast<char>(std::tolower(static_cast<unsigned char>(description[0])));
  return ".TH " + Text(capitals) + " 1 \"\" \"tintwerk " TINTWERK_VERSION "\" \"Tintwerk\"\n" +
         ".SH NAME\n" + Text(PageName(app)) + " \\- " + Text(description) + "\n";
}

Options PositionalsOf(const CLI::App& app) {
  return app.get_options([](const CLI::Option* option) { return option->get_positional(); });
}

Options OptionsOf(const CLI::App& app) {
  return app.get_options([](const CLI::Option* option) { return !option->get_positional(); });
}

std::string Synopsis(const CLI::App& app) {
  std::string line = Bold(FullName(app));
  if (!CommandsOf(app).empty()) line += " " + Italic("COMMAND");
  line += " [" + Italic("OPTIONS") + "]";
  for (const CLI::Option* option : PositionalsOf(app)) {
    const std::string name =
        Italic(option->get_name()) + (option->get_items_expected_max() > 1 ? "..." : "");
    line += option->get_required() ? " " + name : " [" + name + "]";
  }
  return line + "\n";
}

// "INT in [1 - 100]" of "INT:INT in [1 - 100]"
std::string TypeOf(const CLI::Option& option) {
  const std::string type = option.get_type_name();
  return type.substr(type.rfind(':') + 1);
}

// Some descriptions are sentences, others are not.
std::string Sentence(const std::string& text) {
  return Text(text) + (text.ends_with('.') || text.ends_with(')') ? "\n" : ".\n");
}

std::string Entry(const CLI::Option& option) {
  std::string names;
  if (option.get_positional()) names = Italic(option.get_name());
  for (const auto& [dash, group] :
       {std::pair{"-", &option.get_snames()}, {"--", &option.get_lnames()}})
    for (const std::string& name : *group) names += (names.empty() ? "" : ", ") + Bold(dash + name);
  if (!option.get_positional() && option.get_items_expected_max() > 0)
    names += " " + Italic(TypeOf(option));
  std::string entry = ".TP\n" + names + "\n" + Sentence(option.get_description());
  if (!option.get_default_str().empty())
    entry += "By default " + Text(option.get_default_str()) + ".\n";
  return entry;
}

std::string Entries(const Options& options) {
  std::string entries;
  for (const CLI::Option* option : options) entries += Entry(*option);
  return entries;
}

std::string LooksSection() {
  std::string section = ".SH LOOKS\nEach is found by its title or its name.\n";
  std::string_view category;
  for (const Look* look : LooksByCategory()) {
    if (look->category != category)
      section += ".SS " + Text(FindCategory(look->category)->title) + "\n";
    category = look->category;
    section += ".TP\n" + Bold(Slug(look->title)) + " (" + Text(look->name) + ")\n" +
               Text(look->description) + ".\n";
  }
  return section;
}

// A command, with the commands inside it as sections. Options that all of these have are told once.
std::string CommandPage(const CLI::App& app) {
  std::string page = Head(app) + ".SH SYNOPSIS\n" + Synopsis(app);
  const std::vector<const CLI::App*> inside = CommandsOf(app);
  std::string footer = app.get_footer();
  Options shared = OptionsOf(app);
  if (!inside.empty()) {
    shared = OptionsOf(*inside.front());
    for (const CLI::App* one : inside)
      std::erase_if(shared, [&](const CLI::Option* option) {
        return std::ranges::none_of(OptionsOf(*one), [&](const CLI::Option* other) {
          return Entry(*other) == Entry(*option);
        });
      });
    page += ".SH COMMANDS\n";
    footer = inside.front()->get_footer();
  }
  std::set<std::string> told;
  for (const CLI::Option* option : shared) told.insert(Entry(*option));
  for (const CLI::App* one : inside) {
    page += ".SS " + Text(one->get_name()) + "\n" + Synopsis(*one) + ".PP\n" +
            Text(one->get_description()) + ".\n" + Entries(PositionalsOf(*one));
    for (const CLI::Option* option : OptionsOf(*one))
      if (!told.contains(Entry(*option))) page += Entry(*option);
    if (one->get_footer() != footer) page += ".PP\n" + Text(one->get_footer()) + "\n";
  }
  page += ".SH OPTIONS\n" + Entries(PositionalsOf(app)) + Entries(shared);
  if (!footer.empty()) page += ".SH NOTES\n" + Text(footer) + "\n";
  if (app.get_name() == "apply") page += LooksSection();
  return page + ".SH SEE ALSO\n" + Bold(PageName(*app.get_parent())) + "(1)\n";
}

std::string ProgramPage(const CLI::App& program) {
  std::string page = Head(program) + ".SH SYNOPSIS\n" + Synopsis(program) + ".SH COMMANDS\n";
  for (const CLI::App* app : CommandsOf(program))
    page += ".TP\n" + Bold(PageName(*app)) + "(1)\n" + Text(app->get_description()) + ".\n";
  return page + ".SH OPTIONS\n" + Entries(OptionsOf(program)) +
         ".SH EXIT STATUS\n0 if everything was written, 1 if something was not, 2 if nothing was "
         "begun. After a signal 128 and its number.\n";
}

}  // namespace

std::map<std::string, std::string> ManualPages(const CLI::App& program) {
  std::map<std::string, std::string> pages{{PageName(program) + ".1", ProgramPage(program)}};
  for (const CLI::App* app : CommandsOf(program)) pages[PageName(*app) + ".1"] = CommandPage(*app);
  return pages;
}
