#include "app/command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <filesystem>
#include <new>
#include <string_view>
#include <system_error>
#include <vector>

#include "app/host_choice.h"
#include "app/list_commands_cli.h"
#include "app/logs_merge_cli.h"
#include "app/run_commands_cli.h"
#include "app/version.h"
#include "embedded/automation/embedded_host.h"
#include "log/wide_path.h"
#include "platform/program_folders.h"
#include "plotrun/worker_process.h"
#include "res/string_ids.h"
#include "res/string_table.h"
#include "text/strings.h"

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
#ifdef _WIN32
    "Sans journal nommé dans la liste, les journaux vont dans le dossier du programme.\n"
#else
    "Sans journal nommé dans la liste, les journaux vont dans $XDG_DATA_HOME/sheafwork\n"
    "(~/.local/share/sheafwork).\n"
#endif
    "L'hôte embarqué lit les dessins DXF ; il ouvre les .dwg et .dwt en les convertissant\n"
    "en DXF par son convertisseur dwg2dxf (il faut Node.js), ou par celui que nomme\n"
    "SHEAFWORK_DWG_CONVERTER (lancé comme « convertisseur ENTRÉE SORTIE.dxf »).\n"
    "Une présentation sans traceur (« Aucun ») ou dont le traceur manque sur cette machine\n"
    "est tracée sur PDF.pc3, ou sur le périphérique nommé dans SHEAFWORK_FALLBACK_DEVICE.\n"
#ifdef _WIN32
    // No Qt in the Windows program: no desktop application, no painted output.
    "Cette version pour Windows trace en PDF et en HP-GL/2 ; les sorties PNG et SVG,\n"
    "l'impression sur les imprimantes du système et l'application de bureau demandent Qt\n"
    "pour Windows, qu'elle ne contient pas.";
#else
    "Sans argument, ou avec le seul nom d'un fichier liste (un fichier qui existe, ou un\n"
    "nom finissant par .qx3), sheafwork ouvre l'application de bureau (il faut alors un\n"
    "écran).";
#endif

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

std::string HostHelp(const CommandEnvironment& env) {
  const HostRegistry& hosts = env.hosts ? *env.hosts : ProgramHosts();
  const HostChoice choice = ChooseHost({}, {}, hosts);
  return (choice.name.empty() ? "aucun" : choice.name) + choice.reason;
}

// --host and, where the program has the COM host, --progid.
void AddHostOptions(CLI::App& command, std::string& host, std::string& progId,
                    const CommandEnvironment& env) {
  command.add_option("--host", host, "Hôte CAO à piloter (par défaut : " + HostHelp(env) + ")");
  if (HasComHost()) {
    command.add_option("--progid", progId,
                       "Serveur d'automatisation de l'hôte COM (par défaut : SHEAFWORK_PROGID, "
                       "sinon Orvane.Application.15)");
  }
}

// What the list subcommands fill in, and the subcommands themselves (null
// when they were not built).
struct ListCommands {
  ListShowOptions show;
  ListNewOptions created;
  ListAddOptions added;
  ListEditOptions edited;
  ListRemoveOptions removed;
  ListMoveOptions moved;
  ListAppendOptions appended;
  ListSetOptions set;
  CLI::App* showCmd = nullptr;
  CLI::App* newCmd = nullptr;
  CLI::App* addCmd = nullptr;
  CLI::App* editCmd = nullptr;
  CLI::App* removeCmd = nullptr;
  CLI::App* moveCmd = nullptr;
  CLI::App* appendCmd = nullptr;
  CLI::App* setCmd = nullptr;
};

// The commands of the program and of `list`, for the help and for the
// closest match to a mistyped one.
const std::vector<std::string> kCommands = {"list", "plot", "check", "logs"};
const std::vector<std::string> kListCommands = {"show",   "new",  "add",    "edit",
                                                "remove", "move", "append", "set"};
const std::vector<std::string> kLogsCommands = {"merge"};

constexpr const char* kRowExample =
    "Exemple :\n"
    "  sheafwork list add lot.qx3 plans/*.dxf --layout 'Plan A1' --device PDF.pc3 \\\n"
    "      --area extents --scale 1:50\n"
    "  sheafwork list add lot.qx3 coupe.dxf --area window:0,0,420,297 --custom-scale 1:25\n"
    "Les valeurs lisibles sont enregistrées avec les codes du fichier liste (extents : #E,\n"
    "1:50 : S#25, --custom-scale 1:25 : 1#25) ; « sheafwork list show » affiche les deux.";

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
  AddRowOptions(*c.addCmd, c.added.fields);
  c.addCmd->footer(kRowExample);

  c.editCmd = AddSubcommand(*list, "edit",
                            "Modifier les réglages d'une ligne (les options de « list add »)");
  c.editCmd->add_option("LIST", c.edited.list, "Fichier liste")->required();
  c.editCmd->add_option("N", c.edited.row, "Numéro de la ligne (à partir de 1)")->required();
  AddRowOptions(*c.editCmd, c.edited.fields);
  c.editCmd->footer(
      "Seuls les réglages donnés changent ; \"\" vide un réglage (--area \"\" garde l'aire de la\n"
      "présentation). Exemple : sheafwork list edit lot.qx3 2 --scale fit "
      "--no-scale-lineweights");

  c.removeCmd = AddSubcommand(*list, "remove", "Supprimer des lignes d'une liste");
  c.removeCmd->add_option("LIST", c.removed.list, "Fichier liste")->required();
  c.removeCmd->add_option("N", c.removed.rows, "Numéros des lignes (à partir de 1)")->required();

  c.moveCmd = AddSubcommand(*list, "move", "Déplacer une ligne dans une liste");
  c.moveCmd->add_option("LIST", c.moved.list, "Fichier liste")->required();
  c.moveCmd->add_option("N", c.moved.from, "Numéro de la ligne à déplacer")->required();
  c.moveCmd->add_option("--to", c.moved.to, "Sa nouvelle place (les autres suivent)")->required();

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
  plot.add_option("LIST_OR_DRAWINGS", options.inputs,
                  "Fichier liste (.qx3 ; « - » : lu sur l'entrée standard), ou dessins (.dxf, "
                  ".dwg, .dwt) tracés sans liste")
      ->required();
  AddHostOptions(plot, options.host, options.progId, env);
  AddText(&plot, "--combine", options.combine,
          "Réunir aussi toutes les feuilles tracées, dans l'ordre, en un seul fichier PDF "
          "(hôte embarqué seulement)");
  AddText(&plot, "--output-dir", options.outputDir,
          "Ecrire toutes les feuilles dans ce dossier (créé au besoin), nommées "
          "<dessin>-<présentation>.<ext>, -2, -3... quand le nom est déjà pris "
          "(hôte embarqué seulement)");
  AddText(&plot, "--plot-style", options.plotStyle,
          "Table de styles de tracé (.ctb) de toutes les feuilles, cherchée comme l'hôte "
          "cherche les tables (par exemple monochrome.ctb)");
  AddText(&plot, "--shard", options.shard,
          "Ne tracer que la part K de N de la liste, les lignes r où (r - 1) modulo N "
          "vaut K - 1, avec ses propres journaux (nom.shard-K-of-N.ext) et leur relevé "
          "(.json) ; « sheafwork logs merge » les réunit ; --combine y nomme aussi le PDF de la "
          "part");
  plot.get_option("--shard")->type_name("K/N");
  plot.add_flag("-q,--quiet", options.quiet, "N'afficher que les erreurs et le bilan");
#ifdef _WIN32
  const char* jobsHelp =
      "Nombre de processus qui tracent les lignes (1 seulement : le traçage en parallèle "
      "n'existe pas encore sous Windows)";
#else
  const char* jobsHelp =
      "Nombre de processus qui tracent les lignes en parallèle (1 par défaut ; 0 : un "
      "par cœur ; hôte embarqué seulement) ; les journaux, les noms de --output-dir et les "
      "pages de --combine restent dans l'ordre des lignes";
#endif
  plot.add_option("-j,--jobs", options.jobs, jobsHelp)
      ->check(CLI::Range(0, 256).description(""))
      ->type_name("N");
  AddRowOptions(plot, options.fields);
  for (CLI::Option* option : plot.get_options()) {
    const std::string& name = option->get_name();
    for (const char* row : {"--layout", "--setup", "--device", "--layers", "--area", "--scale",
                            "--custom-scale", "--scale-lineweights", "--plot-file"}) {
      if (name.starts_with(row)) option->group("Lignes (avec des dessins)");
    }
  }
  plot.footer(
      "Avec des dessins, chacun devient une ligne aux réglages par défaut que les options\n"
      "des lignes changent, comme « list add ». Exemple :\n"
      "  sheafwork plot plans/*.dxf --output-dir sorties --area extents --scale 1:50\n"
      "Sur un terminal, une ligne de progression donne la ligne n/N, les feuilles tracées,\n"
      "le temps écoulé et une estimation du temps restant.");
}

void AddCheckOptions(CLI::App& check, CheckOptions& options, const CommandEnvironment& env) {
  check.add_option("LIST", options.list, "Fichier liste (.qx3)")->required();
  AddHostOptions(check, options.host, options.progId, env);
  AddText(&check, "--save", options.save, "Enregistrer aussi les résultats dans ce fichier texte");
  check.add_flag("--append-journal", options.appendJournal,
                 "Ajouter aussi les résultats au journal de la liste");
}

void AddLogsCommands(CLI::App* logs, CLI::App*& mergeCmd, LogsMergeOptions& options) {
  logs->require_subcommand(1);
  mergeCmd = AddSubcommand(
      *logs, "merge",
      "Réunir les journaux des parts d'une liste (plot --shard K/N) en son journal et son "
      "journal des erreurs, dans l'ordre des lignes");
  mergeCmd->add_option("LIST", options.list, "Fichier liste (.qx3) tracé par parts")->required();
  mergeCmd
      ->add_option("--shards", options.shards,
                   "Nombre de parts (par défaut : celui des relevés trouvés à côté des journaux)")
      ->check(CLI::Range(1, 32767).description(""))
      ->type_name("N");
  mergeCmd->footer(
      "Chaque part K de N a écrit, à côté des journaux de la liste, les siens\n"
      "(nom.shard-K-of-N.ext) et son relevé (nom.shard-K-of-N.ext.json : liste, empreinte de\n"
      "ses lignes, part, octets de chaque ligne). Toutes les parts doivent être là, venir de\n"
      "cette liste telle qu'elle est et s'être terminées ; sinon rien n'est écrit (statut 2).\n"
      "Les journaux réunis sont ceux d'un seul traçage de toute la liste : en-têtes et\n"
      "commentaire écrits une fois, d'après la liste, puis les lignes de chaque ligne de la\n"
      "liste dans l'ordre ; seuls les temps écoulés sont ceux des parts. Un journal en mode\n"
      "ajout reçoit le tout à sa suite. Le bilan compte les lignes de toutes les parts.\n"
      "Statut : 0 toutes les lignes tracées ; 1 une ligne en échec, ou un journal non écrit ;\n"
      "2 liste illisible, part manquante, d'une autre liste ou d'un autre découpage, ou\n"
      "inachevée.\n"
      "Exemple :\n"
      "  parallel sheafwork plot lot.qx3 --shard {}/4 ::: 1 2 3 4\n"
      "  sheafwork logs merge lot.qx3");
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
    const auto range = rest.find(" not in range ");
    const auto to = rest.rfind(" to ");
    if (rest.starts_with("Value ") && range != std::string_view::npos &&
        to != std::string_view::npos && to > range) {
      return option + " : « " + std::string(rest.substr(6, range - 6)) + " » n'est pas entre " +
             std::string(rest.substr(range + 14, to - range - 14)) + " et " +
             std::string(rest.substr(to + 4));
    }
    if (rest.find(" required ") != std::string_view::npos && ends(" missing")) {
      return option + " : valeur manquante";
    }
  }
  return "arguments incorrects : " + std::string(message);
}

// The number of one-character insertions, removals and replacements that
// make `a` into `b`.
std::size_t EditDistance(std::string_view a, std::string_view b) {
  std::vector<std::size_t> row(b.size() + 1);
  for (std::size_t j = 0; j <= b.size(); ++j) row[j] = j;
  for (std::size_t i = 1; i <= a.size(); ++i) {
    std::size_t diagonal = row[0];
    row[0] = i;
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const std::size_t replaced = diagonal + (a[i - 1] == b[j - 1] ? 0 : 1);
      diagonal = row[j];
      row[j] = std::min({row[j] + 1, row[j - 1] + 1, replaced});
    }
  }
  return row[b.size()];
}

// Refuses a word that is no command, naming the closest one. "--help"
// counts, for those who type "help".
int UnknownCommand(const std::string& prefix, std::string_view word,
                   const std::vector<std::string>& commands, std::ostream& err) {
  std::vector<std::string> candidates = commands;
  candidates.push_back("--help");
  const std::string* closest = &candidates.front();
  for (const std::string& candidate : candidates) {
    if (EditDistance(word, candidate) < EditDistance(word, *closest)) closest = &candidate;
  }
  err << "sheafwork: " << LoadResourceText(ids::kCliUnknownCommand) << " « " << prefix << word
      << " » ; " << LoadResourceText(ids::kCliClosestCommand) << " « sheafwork " << prefix
      << *closest << " » ?\n";
  return kExitBadInput;
}

// The word where a command is expected, when it is none: the first
// argument, or the one after "list".
int CheckCommandWords(int argc, const char* const* argv, std::ostream& err) {
  const auto isWord = [](std::string_view arg) { return !arg.empty() && arg.front() != '-'; };
  const auto known = [](const std::vector<std::string>& commands, std::string_view word) {
    return std::find(commands.begin(), commands.end(), word) != commands.end();
  };
  const std::string_view first = argv[1];
  if (isWord(first) && !known(kCommands, first)) {
    return UnknownCommand("", first, kCommands, err);
  }
  if (first == "list" && argc > 2 && isWord(argv[2]) && !known(kListCommands, argv[2])) {
    return UnknownCommand("list ", argv[2], kListCommands, err);
  }
  if (first == "logs" && argc > 2 && isWord(argv[2]) && !known(kLogsCommands, argv[2])) {
    return UnknownCommand("logs ", argv[2], kLogsCommands, err);
  }
  return kExitOk;
}

void PrintHelp(std::ostream& out, const std::string& help) {
  out << help;
  if (!help.empty() && help.back() != '\n') out << '\n';
}

}  // namespace

bool WantsDesktop(int argc, const char* const* argv) {
  if (argc <= 1) return true;
  if (argc > 2) return false;
  const std::string arg = argv[1];
  if (arg.empty() || arg.front() == '-') return false;
  for (const std::string& command : kCommands) {
    if (arg == command) return false;
  }
  std::error_code ec;
  return EndsWithIgnoreCase(arg, ".qx3") || std::filesystem::is_regular_file(FsPath(arg), ec);
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
  if (named == kPlotWorkerCommand) {
    // Started by a parallel run, not by the user: no help, no parser.
    const CommandIo io{out, err, env};
    return RunPlotWorker(std::vector<std::string>(argv + 2, argv + argc), io);
  }

  ListCommands listed;
  CLI::App* list = AddSubcommand(app, "list", "Créer, modifier et afficher des fichiers listes");
  if (named == "list") AddListCommands(list, listed);

  PlotOptions plot;
  CLI::App* plotCmd = AddSubcommand(
      app, "plot",
      "Tracer chaque ligne d'une liste, ou des dessins sans liste (journal et journal des "
      "erreurs)");
  if (named == "plot") AddPlotOptions(*plotCmd, plot, env);

  CheckOptions check;
  CLI::App* checkCmd =
      AddSubcommand(app, "check", "Essai de traçage : ce qui échouerait, sans rien tracer");
  if (named == "check") AddCheckOptions(*checkCmd, check, env);

  LogsMergeOptions merged;
  CLI::App* mergeCmd = nullptr;
  CLI::App* logs = AddSubcommand(app, "logs", "Réunir les journaux des parts d'une liste");
  if (named == "logs") AddLogsCommands(logs, mergeCmd, merged);

  app.footer(kFooter);  // after the subcommands, which would inherit it

  if (argc > 1) {
    if (const int status = CheckCommandWords(argc, argv, err); status != kExitOk) return status;
  }
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
    if (chosen(listed.editCmd)) return RunListEdit(listed.edited, io);
    if (chosen(listed.removeCmd)) return RunListRemove(listed.removed, io);
    if (chosen(listed.moveCmd)) return RunListMove(listed.moved, io);
    if (chosen(listed.appendCmd)) return RunListAppend(listed.appended, io);
    if (chosen(listed.setCmd)) return RunListSet(listed.set, io);
    if (*plotCmd) return RunPlot(plot, io);
    if (*checkCmd) return RunCheck(check, io);
    if (chosen(mergeCmd)) return RunLogsMerge(merged, io);
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
