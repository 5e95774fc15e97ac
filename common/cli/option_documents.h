// What installed programs come with, made from the one definition of their options: a manual page and
// completions for shells.
#pragma once

#include <string>

namespace CLI {
class App;
}

namespace genostat::common {

// Gives a program the hidden option --generate man|bash|zsh|fish, which prints that document and ends parsing
// as
// --version does. `seeAlso` names manual pages. The program must outlive its options.
//
// Conventions of the definition:
// - a type name lists what a value may be: FILE, FOLDER (or DIR), words in lower case or digits to be taken
// as they are, others
//   for anything else; "none|illumina|SEQUENCE", "FILE|-". Of an argument without a type name, the name
//   counts.
// - in a footer, a block of lines below "Something:" becomes a section of that name. A line of it that is
// indented
//   by two columns is one entry, its term ended by two spaces; deeper lines go on with the entry before.
//   Blocks below "Examples:" are shown as they are; other text becomes paragraphs.
// - options of the empty group and subcommands of the empty group stay out.
void offerDocuments(CLI::App& program, std::string seeAlso);

}  // namespace genostat::common
