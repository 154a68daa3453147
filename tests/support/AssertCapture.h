// AssertCapture: collects the failed assertions of a scope instead of printing them.
//
//   support::AssertCapture asserts;
//   bitmap.Clear(0);                                    // not locked
//   EXPECT_EQ(asserts.Take(), support::Messages{"bitmap not locked"});
#ifndef ASSERTCAPTURE_H
#define ASSERTCAPTURE_H

#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "Trak_Assert.h"

namespace support
{

using Messages = std::vector<std::string>;

//! Handler from construction to destruction; the handler before it is then back. Scopes may be nested: the innermost
//! collects.
class AssertCapture
{
public:
    //! A failed assertion with the position of its checking site.
    struct Report
    {
        std::string  file;
        unsigned int line;
        std::string  message;
    };

    AssertCapture() : m_outer(s_innermost), m_before(Trak_SetAssertHandler(&Collect)) { s_innermost = this; }
    ~AssertCapture()
    {
        Trak_SetAssertHandler(m_before);
        s_innermost = m_outer;
    }
    AssertCapture(const AssertCapture&)            = delete;
    AssertCapture& operator=(const AssertCapture&) = delete;

    const std::vector<Report>& Reports() const { return m_reports; }
    std::size_t                Count() const { return m_reports.size(); }
    std::size_t                Count(const std::string& message) const
    {
        return static_cast<std::size_t>(std::count_if(m_reports.begin(), m_reports.end(),
                                                      [&](const Report& report) { return report.message == message; }));
    }

    //! The messages so far, in order.
    Messages Texts() const
    {
        Messages texts;
        for (const Report& report : m_reports) texts.push_back(report.message);
        return texts;
    }

    //! The messages since the last Take, which are forgotten.
    Messages Take()
    {
        Messages texts = Texts();
        m_reports.clear();
        return texts;
    }

    void Clear() { m_reports.clear(); }

private:
    static void Collect(const char* file, unsigned int line, const char* message)
    {
        s_innermost->m_reports.push_back({file, line, message});
    }

    inline static AssertCapture* s_innermost = nullptr;

    AssertCapture*      m_outer;
    Trak_AssertHandler  m_before;
    std::vector<Report> m_reports;
};

//! The messages that an action raises.
template <class Action>
Messages MessagesOf(Action&& action)
{
    AssertCapture asserts;
    std::forward<Action>(action)();
    return asserts.Take();
}

}  // namespace support

#endif
