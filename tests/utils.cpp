#include "utils.h"

#include "interpose.h"

#include <csignal>
#include <cstring>
#include <deque>
#include <dlfcn.h>
#include <fcntl.h>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <sstream>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace test;
using testing::ElementsAre;

namespace {

// What the program's own rand, srand, getppid, fork and setrlimit, at its end, answer and got.
std::deque<int> draws;
unsigned seed = 0;
pid_t parent = 4711;
bool fork_fails = false;
bool setrlimit_fails = false;

const std::string FUSE = "/tmp/fuse_d/";
const std::string FOLDER = FUSE + "MISC/";
const std::string CARD = FOLDER + "card";

class CardId : public testing::Test {
  protected:
    void SetUp() override
    {
        reset();
        draws.clear();
        ASSERT_EQ(0, system("rm -rf /tmp/fuse_d /tmp/fuse_i && mkdir /tmp/fuse_d /tmp/fuse_i"));
        memset(id, 'x', sizeof id);
    }
    static void write(const std::string &text)
    {
        mkdir(FOLDER.c_str(), 0777);
        std::ofstream(CARD) << text;
    }
    static std::string content(const std::string &path = CARD)
    {
        std::ostringstream text;
        text << std::ifstream(path).rdbuf();
        return text.str();
    }

    char id[ZV_CARD_ID_SIZE];
};

TEST_F(CardId, IsMadeOnceAndKept)
{
    draws = {0, 0, 2147483647};
    EXPECT_EQ(0, getCardIDStr(id));
    EXPECT_STREQ("4611686014132420608", id);
    EXPECT_EQ(1234u, seed);
    EXPECT_EQ("4611686014132420608", content());
    EXPECT_EQ(0, getCardIDStr(id));
    EXPECT_STREQ("4611686014132420608", id);
    EXPECT_TRUE(draws.empty());

    draws = {5};
    EXPECT_EQ(0, getCardIDStrFromCard(id, 1));
    EXPECT_EQ("24", content("/tmp/fuse_i/MISC/card"));
    EXPECT_TRUE(log_messages().empty());
}

TEST_F(CardId, IsReadFromWhateverTheFileHolds)
{
    const std::tuple<std::string, std::string, std::string> cases[] = {
        {"12345", "12345", "12345"},
        {"12345\n", "12345", "12345\n"},
        {"123456789012345678901234567890123", "123456789012345678901234567890", "123456789012345678901234567890123"},
        {"", "24", "24"},
        {"\n777", "24", "24"},
        {"12a45", "24", "24"},
        {"-12", "24", "24"},
        {std::string("\0\0", 2), "24", "24"},
        {std::string(5000, '\xFF'), "24", "24"},
    };
    for (const auto &[before, expected, after] : cases) {
        write(before);
        draws = {5};
        EXPECT_EQ(0, getCardIDStr(id)) << before;
        EXPECT_EQ(expected, id);
        EXPECT_EQ(after, content());
    }
}

TEST_F(CardId, HealsAfterEveryFailure)
{
    EXPECT_EQ(-1, getCardIDStr(nullptr));

    ASSERT_EQ(0, rmdir(FUSE.c_str()));
    EXPECT_EQ(-1, getCardIDStr(id));
    EXPECT_STREQ("0", id);

    mkdir(FUSE.c_str(), 0777);
    std::ofstream(FUSE + "MISC") << "a file";
    EXPECT_EQ(-1, getCardIDStr(id));

    unlink((FUSE + "MISC").c_str());
    mkdir(FOLDER.c_str(), 0777);
    mkdir(CARD.c_str(), 0777);
    std::ofstream(CARD + "/inside") << "1";
    EXPECT_EQ(-1, getCardIDStr(id));
    EXPECT_STREQ("0", id);
    unlink((CARD + "/inside").c_str());

    draws.assign(10, 0);
    EXPECT_EQ(-1, getCardIDStr(id));
    EXPECT_TRUE(draws.empty());
    EXPECT_STREQ("0", id);

    // The disk is full: a part of the number must not pass for an id later.
    signal(SIGXFSZ, SIG_IGN);
    rlimit before = {};
    getrlimit(RLIMIT_FSIZE, &before);
    const rlimit two_bytes = {2, before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &two_bytes);
    draws = {99};
    EXPECT_EQ(-1, getCardIDStr(id));
    setrlimit(RLIMIT_FSIZE, &before);
    EXPECT_STREQ("0", id);

    EXPECT_THAT(log_messages(),
                ElementsAre("Cannot call with null pointer", "Failed to create folder:" + FOLDER,
                            "Path:" + FOLDER + " exists and is a NOT folder", "Failed to create file  " + CARD,
                            "Failed to get random number", "Failed to get write card_id to file"));
    draws = {3};
    EXPECT_EQ(0, getCardIDStr(id));
    EXPECT_STREQ("8", id);
}

TEST_F(CardId, IsKeptInARegularFileOnly)
{
    mkdir(FOLDER.c_str(), 0777);
    for (const bool has_other_end : {false, true}) {
        unlink(CARD.c_str());
        ASSERT_EQ(0, mkfifo(CARD.c_str(), 0666));
        const int other_end = has_other_end ? open(CARD.c_str(), O_RDWR) : -1;
        EXPECT_EQ(has_other_end ? 4 : -1, ::write(other_end, "123\n", 4));
        draws = {5};
        EXPECT_EQ(0, getCardIDStr(id));
        ASSERT_STREQ("24", id);
        EXPECT_EQ("24", content());
        close(other_end);
    }
    EXPECT_TRUE(log_messages().empty());

    for (const char *behind : {"", "12345"}) { // nothing, or an id, which is not this card's
        reset();
        const std::string target = FUSE + "target";
        unlink(CARD.c_str());
        if (*behind != '\0') {
            std::ofstream(target) << behind;
        }
        ASSERT_EQ(0, symlink(target.c_str(), CARD.c_str()));
        EXPECT_EQ(-1, getCardIDStr(id));
        EXPECT_STREQ("0", id);
        EXPECT_THAT(log_messages(), ElementsAre("Failed to create file  " + CARD));
        EXPECT_EQ(behind, content(target));
        EXPECT_EQ(*behind != '\0', access(target.c_str(), F_OK) == 0);
    }
}

TEST(Text, CardIdIsDigits)
{
    EXPECT_EQ(0, validateCardID("12a", 3));
    EXPECT_EQ(1, validateCardID("12a", 2));
    EXPECT_EQ(1, validateCardID("12", 30));
    EXPECT_EQ(1, validateCardID("", 30));
    EXPECT_EQ(1, validateCardID("x", 0));
    EXPECT_EQ(0, validateCardID("/", 1));
    EXPECT_EQ(0, validateCardID(":", 1));
}

TEST(Text, UrlIsDecodedInPlace)
{
    struct Case {
        std::string url;
        uint32_t length;
        std::string decoded;
    };
    const Case cases[] = {
        {"a%20b", 5, "a b"}, {"%41%5a%7E", 9, "AZ~"}, {"a+b%2B", 6, "a+b+"},
        {"ab%", 3, "ab"},    {"ab%4", 4, "ab"},       {"", 7, ""},
        {"a%41b", 2, "a"},   {"a%41b", 4, "aAb"},     {"ab%", 100, "ab"},
        {"ab%4", 100, "ab"}, {"%00c", 4, {"\0c", 2}}, {"plain", 0, "plain"},
    };
    for (const Case &c : cases) {
        const auto url = std::make_unique<char[]>(c.url.size() + 1);
        memcpy(url.get(), c.url.c_str(), c.url.size() + 1);
        uint32_t length = c.length;
        unescapeUrl(url.get(), &length);
        EXPECT_EQ(c.decoded, std::string(url.get(), length)) << c.url;
        EXPECT_EQ('\0', url[length]);
    }
    uint32_t length = 5;
    reset();
    unescapeUrl(nullptr, &length);
    char url[] = "%41";
    unescapeUrl(url, nullptr);
    EXPECT_STREQ("%41", url);
    EXPECT_EQ(5u, length);
    EXPECT_THAT(log_messages(),
                ElementsAre("Cannot escape url, pointer is null", "Cannot escape url, pointer is null"));
}

TEST(Text, UrlDecodesEveryPairOfBytes)
{
    // By the rule, written out for whole numbers.
    const auto value = [](int code) { return code < 65 ? code - 48 : (code - (code / 32 % 2) * 32) - 55; };
    for (int high = 1; high < 256; ++high) {
        for (int low = 1; low < 256; ++low) {
            char url[] = {'%', static_cast<char>(high), static_cast<char>(low), 'z', '\0'};
            uint32_t length = 4;
            unescapeUrl(url, &length);
            const int expected = ((value(high) + 256) % 16 * 16 + value(low) + 256) % 256;
            ASSERT_EQ(2u, length);
            ASSERT_EQ(static_cast<char>(expected), url[0]) << high << ' ' << low;
            ASSERT_EQ('z', url[1]);
        }
    }
}

TEST(Text, TrimSkipsLeadingBlanks)
{
    char text[] = " \t x ";
    EXPECT_EQ(text + 3, trim(text));
    EXPECT_STREQ("x ", trim(text));
    EXPECT_EQ(nullptr, trim("  "));
    EXPECT_EQ(nullptr, trim(""));
    EXPECT_EQ(nullptr, trim(nullptr));
}

TEST(Marker, ExistsOrNot)
{
    ASSERT_EQ(0, system("rm -rf /tmp/fuse_d && mkdir /tmp/fuse_d"));
    EXPECT_EQ(0, messages_txt_exists());
    std::ofstream("/tmp/fuse_d/messages.txt") << "";
    EXPECT_EQ(1, messages_txt_exists());
}

// Runs `daemonize` in a process of its own, so that the test keeps its session, folder and limits. Returns what the
// process that goes on has printed and become.
std::string daemon_of(int32_t (*daemonize)())
{
    fflush(nullptr);
    int ends[2];
    EXPECT_EQ(0, pipe(ends));
    const pid_t child = fork();
    if (child == 0) {
        dup2(ends[1], STDOUT_FILENO);
        setvbuf(stdout, nullptr, _IOFBF, BUFSIZ);
        umask(077);
        printf("once,");
        const int32_t result = daemonize();
        char folder[100] = "";
        rlimit core = {};
        getrlimit(RLIMIT_CORE, &core);
        printf("%d,%s,%s,%03o,%s", result, getsid(0) == getpid() ? "leads" : "follows", getcwd(folder, sizeof folder),
               umask(0), core.rlim_cur == RLIM_INFINITY ? "core" : "none");
        exit(0);
    }
    close(ends[1]);
    std::string text;
    char buffer[256];
    for (ssize_t got; (got = read(ends[0], buffer, sizeof buffer)) > 0;) {
        text.append(buffer, static_cast<size_t>(got));
    }
    close(ends[0]);
    waitpid(child, nullptr, 0);
    return text;
}

TEST(Daemon, LeavesItsSessionFolderAndMask)
{
    ASSERT_EQ(0, system("rm -rf /tmp/fuse_b && mkdir /tmp/fuse_b"));
    const rlimit none = {0, RLIM_INFINITY};
    setrlimit(RLIMIT_CORE, &none);
    EXPECT_EQ("once,0,leads,/,000,none", daemon_of(daemon_init));
    EXPECT_EQ("once,daemon_init_ext: Note: Daemon can generate core dump.0,leads,/tmp/fuse_b,000,core",
              daemon_of([] { return daemon_init_ext(1); }));
    rmdir("/tmp/fuse_b");
    EXPECT_THAT(daemon_of([] {
                    setrlimit_fails = true;
                    return daemon_init_ext(1);
                }),
                testing::StartsWith("once,daemon_init_ext: Error: unable to set core limit in order to generate core "
                                    "dump!daemon_init_ext: Note: Daemon can generate core dump.-1,leads,"));
    EXPECT_THAT(daemon_of([] {
                    fork_fails = true;
                    return daemon_init();
                }),
                testing::StartsWith("once,-1,follows,"));
    EXPECT_THAT(daemon_of([] {
                    parent = 1;
                    return daemon_init();
                }),
                testing::StartsWith("once,0,follows,"));
}

} // namespace

extern "C" {

void srand(unsigned number) noexcept
{
    seed = number;
}

int rand() noexcept
{
    if (draws.empty()) {
        return 1;
    }
    const int number = draws.front();
    draws.pop_front();
    return number;
}

time_t time(time_t *) noexcept
{
    return 1234;
}

pid_t getppid() noexcept
{
    return parent;
}

pid_t fork() noexcept
{
    return fork_fails ? -1 : reinterpret_cast<pid_t (*)()>(dlsym(RTLD_NEXT, "fork"))();
}

// The sanitizers call it themselves, before they are ready for code of their own.
__attribute__((no_sanitize("address", "thread"))) int setrlimit(__rlimit_resource_t resource,
                                                                const rlimit *limit) noexcept
{
    return setrlimit_fails ? -1 : prlimit(0, static_cast<__rlimit_resource>(resource), limit, nullptr);
}

} // extern "C"
