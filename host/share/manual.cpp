#include "host/share/manual.h"

#include "host/text/words.h"

#include <sstream>
#include <utility>

namespace korlit::host {

namespace {

constexpr const char* aboutKinds =
    R"(Korlit knows three kinds of files: ANDI files (netCDF classic with the AIA chromatography template,
.cdf), pairs of a slice file and a report (.sli, .rpt) of the Merivolta data system, and runs of the
Dunvale data system. A kind is recognised by a file's content and name.)";

struct Entry {
    const char* title;
    const char* text;
};
constexpr Entry exitStatuses[]{
    {.title = "0", .text = "Done: all converted, read or equal, nothing found."},
    {.title = "1", .text = "Some file failed, departs from the template, or differs."},
    {.title = "2", .text = "Wrong use, or what can't be compared, an unreadable file included."},
    {.title = "130", .text = "Interrupted."},
};
constexpr Entry environment[]{
    {.title = "TZ",
     .text = "The time zone in which a native date is taken, for the offset in the stamp of an "
             "ANDI file."},
    {.title = "KORLIT_PROFILE",
     .text = "An INI file whose key sShortDate in the section [intl] gives the order of day, month "
             "and year in native dates, as in dd.MM.yyyy."},
    {.title = "NO_COLOR", .text = "If set, nothing is printed in colour."},
};

/// A text that the macros take as it is.
std::string literal(const std::string& text) {
    std::string all;
    if (text.starts_with('.') || text.starts_with('\'')) {
        all = "\\&";
    }
    for (const char letter : text) {
        switch (letter) {
        case '\\':
            all += "\\e";
            break;
        case '-':
            all += "\\-";
            break;
        case '\'':
            all += "\\(aq";
            break;
        default:
            all += letter;
        }
    }
    return all;
}

/// The words of a text on lines of the length that is good style.
std::string filled(const std::string& text) {
    constexpr std::size_t longest = 76;
    std::istringstream words{text};
    std::string lines;
    std::string line;
    for (std::string word; words >> word;) {
        if (!line.empty() && literal(line + ' ' + word).size() > longest) {
            lines += literal(line) + '\n';
            line.clear();
        }
        line += (line.empty() ? "" : " ") + word;
    }
    return lines + literal(line) + '\n';
}

std::string bold(const std::string& text) {
    return "\\fB" + literal(text) + "\\fR";
}

std::string italic(const std::string& text) {
    return "\\fI" + literal(text) + "\\fR";
}

/// Paragraphs, and lines that are indented as they are.
std::string paragraphs(const std::string& text) {
    std::istringstream lines{text + "\n\n"};
    std::string page;
    std::string paragraph;
    std::string examples;
    for (std::string line; std::getline(lines, line);) {
        const bool isExample = line.starts_with(' ');
        if (!isExample && !examples.empty()) {
            page += ".EX\n" + std::exchange(examples, "") + ".EE\n";
        }
        if ((isExample || line.empty()) && !paragraph.empty()) {
            page += ".PP\n" + filled(std::exchange(paragraph, ""));
        }
        (isExample ? examples : paragraph) += isExample ? literal(line) + '\n' : line + ' ';
    }
    return page;
}

std::string entry(const std::string& title, const std::string& text) {
    return ".TP\n" + title + '\n' + filled(text);
}

template <std::size_t count>
std::string entries(const Entry (&all)[count]) {
    std::string page;
    for (const auto& [title, text] : all) {
        page += entry(bold(title), text);
    }
    return page;
}

/// -j, --jobs N
std::string titleOf(const OptionInfo& option) {
    std::string title;
    for (const std::string& name : option.names) {
        title += (title.empty() ? "" : ", ") + bold(name);
    }
    return option.value.empty() ? title : title + ' ' + italic(option.value);
}

std::string textOf(const OptionInfo& option) {
    const std::string choices = joined(option.choices, ", ");
    return option.description + (choices.empty() ? "" : ": ") + choices + '.';
}

std::string argumentText(const OptionInfo& argument) {
    const std::string text = italic(argument.value) + (argument.isList ? "..." : "");
    return argument.isRequired ? text : '[' + text + ']';
}

std::string synopsisOf(const CommandInfo& command) {
    std::string line = bold("korlit " + command.name) + " [" + italic("options") + ']';
    for (const OptionInfo& option : command.options) {
        line +=
            option.isRequired ? ' ' + bold(option.names.front()) + ' ' + italic(option.value) : "";
    }
    for (const OptionInfo& argument : command.arguments) {
        line += ' ' + argumentText(argument);
    }
    return line + '\n';
}

std::string sectionOf(const CommandInfo& command) {
    std::string page = ".SS " + command.name + '\n' + filled(command.description + '.');
    for (const OptionInfo& argument : command.arguments) {
        page += entry(argumentText(argument), textOf(argument));
    }
    for (const OptionInfo& option : command.options) {
        page += entry(titleOf(option), textOf(option));
    }
    return page + paragraphs(command.details);
}

} // namespace

std::string manualPage(const CommandInfo& korlit, const std::string& date) {
    std::string synopsis;
    std::string sections;
    for (const CommandInfo& command : korlit.commands) {
        synopsis += (synopsis.empty() ? "" : ".br\n") + synopsisOf(command);
        sections += sectionOf(command);
    }
    return ".TH KORLIT 1 " + date +
           " \"korlit " KORLIT_VERSION "\" \"User commands\"\n.SH NAME\nkorlit \\- convert "
           "chromatography data and look into it\n.SH SYNOPSIS\n" +
           synopsis + ".SH DESCRIPTION\n" + filled(korlit.description) + paragraphs(aboutKinds) +
           ".SH COMMANDS\n" + sections + ".SH EXIT STATUS\n" + entries(exitStatuses) +
           ".SH ENVIRONMENT\n" + entries(environment);
}

} // namespace korlit::host
