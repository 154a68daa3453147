// Replays the stored inputs of one fuzzer, and every truncation of each. A fuzzer ends the program where something is
// wrong; the name of the input is printed before. Built once per fuzzer, together with its source; KANVO_FUZZ_CORPUS names
// the folder below fuzz/corpus.
#include <algorithm>
#include <csignal>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <unistd.h>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace
{

std::string g_input;  // what runs at the moment

void PrintInput(int signal)
{
    if (write(STDERR_FILENO, g_input.data(), g_input.size()) < 0) _exit(1);
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

class CorpusReplay : public testing::Test
{
protected:
    CorpusReplay()
    {
        namespace fs      = std::filesystem;
        const auto folder = fs::path(KANVO_SOURCE_DIR) / "fuzz" / "corpus" / KANVO_FUZZ_CORPUS;
        for (const auto& entry : fs::directory_iterator(folder))
        {
            std::ifstream             stream(entry.path(), std::ios::binary);
            std::vector<std::uint8_t> bytes{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
            m_inputs.emplace_back(entry.path().filename().string(), std::move(bytes));
        }
        std::sort(m_inputs.begin(), m_inputs.end());
        m_before = std::signal(SIGABRT, &PrintInput);
    }
    ~CorpusReplay() override { std::signal(SIGABRT, m_before); }

    //! The first bytes of an input.
    static void Run(const std::pair<std::string, std::vector<std::uint8_t>>& input, std::size_t size)
    {
        g_input = "\ninput " + input.first + ", " + std::to_string(size) + " bytes of it\n";
        EXPECT_EQ(LLVMFuzzerTestOneInput(input.second.data(), size), 0) << g_input;
    }

    std::vector<std::pair<std::string, std::vector<std::uint8_t>>> m_inputs;

private:
    void (*m_before)(int);
};

}  // namespace

TEST_F(CorpusReplay, EveryStoredInputRuns)
{
    ASSERT_FALSE(m_inputs.empty());
    for (const auto& input : m_inputs) Run(input, input.second.size());
}

TEST_F(CorpusReplay, EveryTruncationOfEveryStoredInputRuns)
{
    for (const auto& input : m_inputs)
    {
        for (std::size_t size = 0; size < input.second.size(); ++size) Run(input, size);
    }
}
