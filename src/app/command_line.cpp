#include "app/command_line.h"

#include <CLI/CLI.hpp>
#include <new>
#include <string_view>

#include "app/list_commands_cli.h"
#include "app/run_commands_cli.h"
#include "app/version.h"
#include "embedded/automation/embedded_host.h"
#include "platform/program_folders.h"
#include "res/string_ids.h"
#include "res/string_table.h"

namespace sheafwork {
namespace {

constexpr const char* kDescription =
    "Sheafwork : traçage en différé de listes de dessins CAO.\n"
    "\n"
    "Statut de sortie : 0 terminé ; 1 une ligne n'a pas été tracée, le traçage s'est\n"
    "arrêté avant la fin ou l'essai de traçage a trouvé une erreur ; 2 entrée\n"
    "inutilisable (arguments, fichier illisible ou incorrect, hôte CAO indisponible).\n";

constexpr const char* kFooter =
    "Les fichiers listes (.qx3) sont en Windows-1252 avec des fins de ligne CR LF ;\n"
    "les chemins des dessins y sont enregistrés en entier.\n"
    "Sans journal nommé dans la liste, les journaux vont dans $XDG_DATA_HOME/sheafwork\n"
    "(~/.local/share/sheafwork).\n"
    "L'hôte embarqué lit les dessins DXF ; il ouvre les .dwg et .dwt en les convertissant\n"
    "en DXF par son convertisseur dwg2dxf (il faut Node.js), ou par celui que nomme\n"
    "SHEAFWORK_DWG_CONVERTER (lancé comme « convertisseur ENTRÉE SORTIE.dxf »).\n"
    "Une présentation sans traceur (« Aucun ») ou dont le traceur manque sur cette machine\n"
    "est tracée sur PDF.pc3, ou sur le périphérique nommé dans SHEAFWORK_FALLBACK_DEVICE.\n"
    "Sans argument, ou avec le seul nom d'un fichier liste, sheafwork ouvre\n"
    "l'application de bureau (il faut alors un écran).";

// Gives CLI11's help the program's language.
void FrenchLabels(CLI::App& app) {
  auto formatter = app.get_formatter();
  formatter->label("Usage", "Utilisation");
  formatter->label("OPTIONS", "OPTIONS");
  formatter->label("Options", "Options");
  formatter->label("Positionals", "Arguments");
  formatter->label("SUBCOMMAND", "COMMANDE");
  formatter->label("SUBCOMMANDS", "COMMANDES");
  formatter->label("Subcommands", "Commandes");
  formatter->label("REQUIRED", "OBLIGATOIRE");
  formatter->label("TEXT", "TEXTE");
  formatter->label("Excludes", "Exclut");
  formatter->label("Needs", "Nécessite");
  formatter->column_width(36);
}

CLI::App* AddSubcommand(CLI::App& parent, const std::string& name, const std::string& help) {
  CLI::App* sub = parent.add_subcommand(name, help);
  sub->group("Commandes");
  sub->set_help_flag("-h,--help", "Afficher cette aide et quitter");
  return sub;
}

const std::map<std::string, bool> kOnOff = {{"on", true}, {"off", false}};
const std::map<std::string, bool> kAppendMode = {{"append", true}, {"overwrite", false}};

// An option whose value is one of the keys of `words`, stored as its meaning.
void AddChoice(CLI::App* app, const std::string& name, std::optional<bool>& target,
               const std::map<std::string, bool>& words, const std::string& help) {
  app->add_option_function<std::string>(
         name, [&target, &words](const std::string& v) { target = words.at(v); }, help)
      ->check(CLI::IsMember(words).description(""))
      ->type_name(words.begin()->first + "|" + std::next(words.begin())->first);
}

void AddText(CLI::App* app, const std::string& name, std::optional<std::string>& target,
             const std::string& help) {
  app->add_option_function<std::string>(
      name, [&target](const std::string& v) { target = v; }, help);
}

std::string HostHelp(const CommandEnvironment& env) {
  const HostRegistry& hosts = env.hosts ? *env.hosts : ProgramHosts();
  return hosts.DefaultName().empty() ? "aucun" : hosts.DefaultName();
}

// What the list subcommands fill in, and the subcommands themselves (null
// when they were not built).
struct ListCommands {
  ListShowOptions show;
  ListNewOptions created;
  ListAddOptions added;
  ListAppendOptions appended;
  ListSetOptions set;
  CLI::App* showCmd = nullptr;
  CLI::App* newCmd = nullptr;
  CLI::App* addCmd = nullptr;
  CLI::App* appendCmd = nullptr;
  CLI::App* setCmd = nullptr;
};

// The list subcommands, with their options, on `list`.
void AddListCommands(CLI::App* list, ListCommands& c) {
  list->require_subcommand(1);

  c.showCmd = AddSubcommand(*list, "show", "Afficher un fichier liste tel qu'il est lu");
  c.showCmd->add_option("LIST", c.show.list, "Fichier liste (.qx3)")->required();
  c.showCmd->add_flag("--json", c.show.json, "Sortie JSON");

  c.newCmd = AddSubcommand(*list, "new",
                           "Créer une liste avec les réglages par défaut et une ligne par dessin");
  c.newCmd->add_option("LIST", c.created.list, "Fichier liste à créer")->required();
  c.newCmd->add_option("DRAWING", c.created.drawings, "Dessins à ajouter");
  c.newCmd->add_flag("--force", c.created.force, "Remplacer un fichier liste existant");

  c.addCmd = AddSubcommand(
      *list, "add",
      "Ajouter des dessins à une liste (créée avec les réglages par défaut si elle n'existe pas)");
  c.addCmd->add_option("LIST", c.added.list, "Fichier liste")->required();
  c.addCmd->add_option("DRAWING", c.added.drawings, "Dessins à ajouter")->required();
  EntryFieldOptions& f = c.added.fields;
  AddText(c.addCmd, "--layout", f.layout, "Présentation (Layout)");
  AddText(c.addCmd, "--setup", f.setup, "Mise en page (PlotSetup)");
  AddText(c.addCmd, "--device", f.device, "Périphérique de traçage (PlotDevice)");
  AddText(c.addCmd, "--layers", f.layers, "Calques : paires « nom 0|1 » (Layers)");
  AddText(c.addCmd, "--area", f.area, "Aire de tracé (PlotArea)");
  AddText(c.addCmd, "--scale", f.scale, "Echelle du tracé (PlotScale)");
  c.addCmd->add_flag("--custom-scale", f.customScale, "Echelle personnalisée (ScaleCustom)");
  c.addCmd->add_flag("--scale-lineweights", f.scaleLineweights,
                     "Mettre à l'échelle les épaisseurs de ligne (ScaleLW)");
  AddText(c.addCmd, "--plot-file", f.plotFile, "Tracer dans ce fichier (PlotFile)");

  c.appendCmd =
      AddSubcommand(*list, "append", "Ajouter à LIST les dessins d'un autre fichier liste");
  c.appendCmd->add_option("LIST", c.appended.list, "Fichier liste à compléter")->required();
  c.appendCmd->add_option("OTHER", c.appended.other, "Fichier liste à ajouter")->required();

  c.setCmd = AddSubcommand(*list, "set", "Modifier les réglages de journalisation");
  c.setCmd->add_option("LIST", c.set.list, "Fichier liste")->required();
  AddChoice(c.setCmd, "--journal", c.set.journalOn, kOnOff, "Journal de traçage : on|off");
  AddText(c.setCmd, "--journal-file", c.set.journalFile, "Nom du fichier journal");
  AddText(c.setCmd, "--journal-header", c.set.journalHeader, "En-tête du journal");
  AddText(c.setCmd, "--journal-comment", c.set.journalComment, "Commentaire du journal");
  AddChoice(c.setCmd, "--journal-mode", c.set.journalAppend, kAppendMode,
            "Journal : append (ajouter) ou overwrite (écraser)");
  AddChoice(c.setCmd, "--error-log", c.set.errorOn, kOnOff, "Journal des erreurs : on|off");
  AddText(c.setCmd, "--error-file", c.set.errorFile, "Nom du fichier journal des erreurs");
  AddText(c.setCmd, "--error-header", c.set.errorHeader, "En-tête du journal des erreurs");
  AddChoice(c.setCmd, "--error-mode", c.set.errorAppend, kAppendMode,
            "Journal des erreurs : append (ajouter) ou overwrite (écraser)");
}

void AddPlotOptions(CLI::App& plot, PlotOptions& options, const CommandEnvironment& env) {
  plot.add_option("LIST", options.list, "Fichier liste (.qx3)")->required();
  plot.add_option("--host", options.host,
                  "Hôte CAO à piloter (par défaut : " + HostHelp(env) + ")");
  AddText(&plot, "--combine", options.combine,
          "Réunir aussi toutes les feuilles tracées, dans l'ordre, en un seul fichier PDF "
          "(hôte embarqué seulement)");
}

void AddCheckOptions(CLI::App& check, CheckOptions& options, const CommandEnvironment& env) {
  check.add_option("LIST", options.list, "Fichier liste (.qx3)")->required();
  check.add_option("--host", options.host,
                   "Hôte CAO à piloter (par défaut : " + HostHelp(env) + ")");
  AddText(&check, "--save", options.save, "Enregistrer aussi les résultats dans ce fichier texte");
  check.add_flag("--append-journal", options.appendJournal,
                 "Ajouter aussi les résultats au journal de la liste");
}

// Says in French what the argument parser found wrong; a message it does not
// know is passed on as it stands.
std::string DescribeParseError(std::string_view message) {
  const auto ends = [&](std::string_view tail) { return message.ends_with(tail); };
  const auto before = [&](std::string_view tail) {
    return message.substr(0, message.size() - tail.size());
  };
  if (message == "A subcommand is required") return "une commande est attendue";
  if (ends(" is required")) return std::string(before(" is required")) + " est obligatoire";
  for (std::string_view lead : {"The following argument was not expected: ",
                                "The following arguments were not expected: "}) {
    if (message.starts_with(lead))
      return "argument inattendu : " + std::string(message.substr(lead.size()));
  }
  const auto colon = message.find(": ");
  if (colon != std::string_view::npos) {
    const std::string option(message.substr(0, colon));
    const std::string_view rest = message.substr(colon + 2);
    const auto notIn = rest.find(" not in {");
    if (notIn != std::string_view::npos && rest.ends_with("}")) {
      const std::string_view choices = rest.substr(notIn + 9, rest.size() - notIn - 10);
      return option + " : « " + std::string(rest.substr(0, notIn)) +
             " » n'est pas une valeur possible (" + std::string(choices) + ")";
    }
    if (rest.find(" required ") != std::string_view::npos && ends(" missing")) {
      return option + " : valeur manquante";
    }
  }
  return "arguments incorrects : " + std::string(message);
}

void PrintHelp(std::ostream& out, const std::string& help) {
  out << help;
  if (!help.empty() && help.back() != '\n') out << '\n';
}

}  // namespace

bool WantsDesktop(int argc, const char* const* argv) {
  if (argc <= 1) return true;
  if (argc > 2) return false;
  const std::string_view arg = argv[1];
  if (arg.empty() || arg.front() == '-') return false;
  for (std::string_view command : {"list", "plot", "check"}) {
    if (arg == command) return false;
  }
  return true;
}

HostRegistry& ProgramHosts() {
  static HostRegistry hosts = [] {
    HostRegistry registry;
    registry.Register(
        kEmbeddedHostName, [] { return embedded::MakeEmbeddedHost(); }, /*makeDefault=*/true);
    return registry;
  }();
  return hosts;
}

int RunCommandLine(int argc, const char* const* argv, std::ostream& out, std::ostream& err) {
  CommandEnvironment env;
  env.defaultLogFolder = UserDataFolder();
  env.dataFolder = RunningProgramLayout().dataFolder;
  env.dataSearched = RunningProgramLayout().searched;
  return RunCommandLine(argc, argv, out, err, env);
}

int RunCommandLine(int argc, const char* const* argv, std::ostream& out, std::ostream& err,
                   const CommandEnvironment& env) {
  CLI::App app(kDescription, "sheafwork");
  FrenchLabels(app);
  app.set_help_flag("-h,--help", "Afficher cette aide et quitter");
  app.set_version_flag("--version", std::string("sheafwork ") + SHEAFWORK_VERSION,
                       "Afficher la version et quitter");
  app.require_subcommand(1);

  // Only the command named first gets its options; the others are there by
  // name and description, for the help and for the parser's messages.
  // Building every option of every command was a noticeable part of a short
  // run.
  const std::string_view named = argc > 1 ? argv[1] : "";

  ListCommands listed;
  CLI::App* list = AddSubcommand(app, "list", "Créer, modifier et afficher des fichiers listes");
  if (named == "list") AddListCommands(list, listed);

  PlotOptions plot;
  CLI::App* plotCmd = AddSubcommand(
      app, "plot", "Tracer chaque ligne d'une liste (journal et journal des erreurs)");
  if (named == "plot") AddPlotOptions(*plotCmd, plot, env);

  CheckOptions check;
  CLI::App* checkCmd =
      AddSubcommand(app, "check", "Essai de traçage : ce qui échouerait, sans rien tracer");
  if (named == "check") AddCheckOptions(*checkCmd, check, env);

  app.footer(kFooter);  // after the subcommands, which would inherit it

  if (argc <= 1) {
    err << "sheafwork: une commande est attendue (sans argument, sheafwork ouvre l'application "
           "de bureau).\n"
        << "Essayez « sheafwork --help »." << '\n';
    return kExitBadInput;
  }
  try {
    app.parse(argc, argv);
  } catch (const CLI::CallForHelp&) {
    PrintHelp(out, app.help("", CLI::AppFormatMode::Normal));
    return kExitOk;
  } catch (const CLI::CallForAllHelp&) {
    PrintHelp(out, app.help("", CLI::AppFormatMode::All));
    return kExitOk;
  } catch (const CLI::CallForVersion& e) {
    out << e.what() << '\n';
    return kExitOk;
  } catch (const CLI::ParseError& e) {
    err << "sheafwork: " << DescribeParseError(e.what()) << '\n'
        << "Essayez « sheafwork --help »." << '\n';
    return kExitBadInput;
  }

  const CommandIo io{out, err, env};
  try {
    const auto chosen = [](const CLI::App* command) { return command && *command; };
    if (chosen(listed.showCmd)) return RunListShow(listed.show, io);
    if (chosen(listed.newCmd)) return RunListNew(listed.created, io);
    if (chosen(listed.addCmd)) return RunListAdd(listed.added, io);
    if (chosen(listed.appendCmd)) return RunListAppend(listed.appended, io);
    if (chosen(listed.setCmd)) return RunListSet(listed.set, io);
    if (*plotCmd) return RunPlot(plot, io);
    if (*checkCmd) return RunCheck(check, io);
  } catch (const std::bad_alloc&) {
    // Memory ran out outside the plot of a row (which fails on its own).
    err << "sheafwork: " << LoadResourceText(ids::kOutOfMemory) << '\n';
  } catch (const std::exception& e) {
    // Nothing above throws on bad input; this is the last line of defence.
    err << "sheafwork: " << e.what() << '\n';
  }
  return kExitBadInput;
}

}  // namespace sheafwork
