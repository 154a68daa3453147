// Program_Say: everything on stderr, a line for each thing.
#ifndef PROGRAM_SAY_H
#define PROGRAM_SAY_H

#include <cstddef>
#include <string>

namespace kanvo_image
{

void SayError(const std::string& line);
void SayWarning(const std::string& line);
void SayNote(const std::string& line);

//! How far a command has come through its pictures. On a terminal one line that is written over and over, which makes
//! room for errors and warnings; elsewhere a line for each picture.
class Progress
{
public:
    Progress(std::size_t count, bool quiet);
    Progress(const Progress&) = delete;
    ~Progress() { Finish(); }

    //! The next picture is about to be dealt with.
    void Begin(const std::string& name);
    //! It is done; what became of it.
    void Done(const std::string& name, const std::string& outcome);
    //! The line that is on the terminal now stays.
    void Finish();

private:
    std::string Counter() const;
    void        Replace(const std::string& line);

    std::size_t m_count;
    std::size_t m_number = 0;
    bool        m_quiet;
    bool        m_terminal;
};

}  // namespace kanvo_image

#endif
