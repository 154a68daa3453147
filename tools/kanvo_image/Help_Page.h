// Help_Page: what --help prints, laid out like a manual page. Options are listed as the command line defines them.
#ifndef HELP_PAGE_H
#define HELP_PAGE_H

#include <string>

#include <CLI/CLI.hpp>

namespace kanvo_image
{

class HelpPage : public CLI::Formatter
{
public:
    //! Of the whole program, or of one command.
    std::string make_help(const CLI::App* app, std::string name, CLI::AppFormatMode mode) const override;
};

}  // namespace kanvo_image

#endif
