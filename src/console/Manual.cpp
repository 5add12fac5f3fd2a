#include "console/Manual.h"

#include <CLI/CLI.hpp>

namespace kalvrooms {
namespace {

// A hyphen is a minus sign for troff only when it is told, a dot in front of a line an instruction.
std::string troff(const std::string& text) {
    std::string escaped;
    for (const char byte : text) {
        if (byte == '\\' || byte == '-')
            escaped += '\\';
        if (byte == '.' && escaped.empty())
            escaped += "\\&";
        escaped += byte;
    }
    return escaped;
}

bool isPrograms(const CLI::App& program, const CLI::Option& option) {
    return program.get_option_no_throw(option.get_name()) != nullptr;
}

bool isPositional(const CLI::Option* option) {
    return option->get_lnames().empty() && option->get_snames().empty();
}

// Options of a group, or the files of a command; what the program itself knows stands there once.
void describe(std::string& page, const CLI::App& app, const std::string& group) {
    for (const CLI::Option* option : app.get_options()) {
        if (option->get_group() != group || option == app.get_help_ptr() ||
            (app.get_parent() && isPrograms(*app.get_parent(), *option)))
            continue;
        const std::string type = isPositional(option) ? "" : option->get_type_name();
        page += ".TP\n.B " + troff(option->get_name(false, true)) +
                (type.empty() ? "" : " \\fI" + troff(type) + "\\fR") + "\n" +
                troff(option->get_description()) + "\n";
    }
}

std::string filesOf(const CLI::App& app) {
    std::string files;
    for (const CLI::Option* option : app.get_options())
        if (isPositional(option))
            files += " " + option->get_name(false, true);
    return files;
}

std::string optionNames(const CLI::App& app) {
    std::string names;
    for (const CLI::Option* option : app.get_options())
        for (const std::string& name : option->get_lnames())
            names += " --" + name;
    return names;
}

} // namespace

const char* EveryCommand(const Speech& say) {
    return say("Für jeden Befehl", "For every command");
}

std::string ManualPage(const CLI::App& app, const Speech& say) {
    const std::string ownGroup = say("Optionen", "Options");
    const auto commands = app.get_subcommands([](const CLI::App*) { return true; });
    std::string page = ".TH QTO 1\n.SH NAME\nqto \\- " + troff(app.get_description()) + "\n.SH " +
                       say("ÜBERSICHT", "SYNOPSIS") + "\n.B qto\n.I " + say("BEFEHL", "COMMAND") +
                       "\n.RI [ " + say("OPTIONEN", "OPTIONS") + " ]\n.I " + say("DATEI", "FILE") +
                       "\\fR...\n.SH " + say("OPTIONEN", "OPTIONS") + "\n";
    describe(page, app, ownGroup);
    page += std::string(".SS ") + EveryCommand(say) + "\n";
    describe(page, *commands.front(), EveryCommand(say));
    page += std::string(".SH ") + say("BEFEHLE", "COMMANDS") + "\n";
    for (const CLI::App* command : commands) {
        page += ".SS qto " + command->get_name() + troff(filesOf(*command)) + "\n" +
                troff(command->get_description()) + "\n";
        describe(page, *command, ownGroup);
    }
    return page + ".SH " + say("ENDEWERTE", "EXIT STATUS") + "\n.TP\n.B 0\n" +
           say("getan", "done") + "\n.TP\n.B 1\n" + say("Befunde", "findings") + "\n.TP\n.B 2\n" +
           say("nicht möglich", "not possible") + "\n";
}

std::string Completion(const CLI::App& app) {
    std::string names;
    std::string cases;
    for (const CLI::App* command : app.get_subcommands([](const CLI::App*) { return true; })) {
        names += (names.empty() ? "" : " ") + command->get_name();
        cases += "    " + command->get_name() + ") words=\"" + optionNames(*command).substr(1) +
                 "\" ;;\n";
    }
    return "_qto() {\n  local words word=${COMP_WORDS[COMP_CWORD]}\n  case ${COMP_WORDS[1]} in\n" +
           cases + "    *) words=\"" + names + optionNames(app) +
           "\" ;;\n  esac\n"
           "  if [ \"$COMP_CWORD\" -gt 1 ] && [[ $word != -* ]]; then\n"
           "    mapfile -t COMPREPLY < <(compgen -f -- \"$word\")\n  else\n"
           "    mapfile -t COMPREPLY < <(compgen -W \"$words\" -- \"$word\")\n  fi\n}\n"
           "complete -o filenames -F _qto qto\n";
}

} // namespace kalvrooms
