#include "zvMbox.h"

#include "interpose.h"
#include "queues.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace test;
using testing::ElementsAre;

namespace {

const std::string NAME = "/t_mbox" + std::to_string(getpid());

class Mailbox : public testing::Test {
  protected:
    void SetUp() override
    {
        reset();
        fail_nothing();
    }
    void TearDown() override
    {
        fail_nothing();
        mq_unlink(NAME.c_str());
    }
    static bool exists()
    {
        const mqd_t queue = mq_open(NAME.c_str(), O_RDONLY);
        return queue != -1 && mq_close(queue) == 0;
    }
};

TEST_F(Mailbox, ClosesNothingOfOthers)
{
    zvMbox_t mailbox;
    ASSERT_EQ(0, zvMbox_rxopen(NAME.c_str(), 2, &mailbox));
    const mqd_t number = mailbox.mqd;
    EXPECT_EQ(0, zvMbox_close(&mailbox));
    ASSERT_EQ(number, dup(0));
    EXPECT_EQ(-1, zvMbox_close(&mailbox));
    EXPECT_EQ(EBADF, errno);
    EXPECT_EQ(0, close(number));
}

TEST_F(Mailbox, CarriesMessagesInOrder)
{
    umask(0);
    zvMbox_t receiver;
    zvMbox_t sender;
    ASSERT_EQ(0, zvMbox_rxopen(NAME.c_str(), 2, &receiver));
    ASSERT_EQ(0, zvMbox_txopen(NAME.c_str(), &sender));
    struct stat state = {};
    ASSERT_EQ(0, fstat(receiver.mqd, &state));
    EXPECT_EQ(0664u, state.st_mode & 0777);
    EXPECT_EQ(2, receiver.attr.mq_maxmsg);
    EXPECT_EQ(1500, receiver.attr.mq_msgsize);
    EXPECT_EQ(40, sender.attr.mq_maxmsg);

    const Bytes largest(1500, 0x5A);
    const Bytes small = {1, 2, 3};
    EXPECT_EQ(0, zvMbox_send(largest.data(), 1500, &sender));
    EXPECT_EQ(0, zvMbox_send(small.data(), 3, &sender));
    EXPECT_EQ(2, sender.attr.mq_maxmsg);
    EXPECT_EQ(0, zvMbox_send(small.data(), 2, &sender)); // full: lost, and a success
    EXPECT_THAT(log_messages(), ElementsAre("No Longer an ASSERT: Mailbox Full: mbox=\"" + NAME + "\" >= 2 messages"));

    uint8_t got[1500];
    EXPECT_EQ(1500, snzvMbox_receive(got, sizeof got, &receiver));
    EXPECT_EQ(largest, Bytes(got, got + 1500));
    EXPECT_EQ(3, snzvMbox_timedreceive(got, sizeof got, &receiver));
    EXPECT_EQ(small, Bytes(got, got + 3));
    EXPECT_EQ(-1, snzvMbox_timedreceive(got, sizeof got, &receiver));
    errno = 0;
    EXPECT_EQ(-1, snzvMbox_timedreceive_w_time(got, sizeof got, &receiver, 0));
    EXPECT_EQ(ETIMEDOUT, errno);
    EXPECT_THAT(waits().selects, ElementsAre(10, 0));
    EXPECT_EQ(0, zvMbox_close(&receiver));
    EXPECT_EQ(0, zvMbox_close(&sender));
    EXPECT_TRUE(exists());
    EXPECT_EQ(0, zvMbox_unlink(NAME.c_str()));
    EXPECT_FALSE(exists());
}

TEST_F(Mailbox, OpenTriesFiveTimes)
{
    zvMbox_t mbox;
    fail(Call::MQ_OPEN, EMFILE, 4);
    ASSERT_EQ(0, zvMbox_rxopen(NAME.c_str(), 2, &mbox));
    EXPECT_THAT(waits().sleeps, ElementsAre(10000, 10000, 10000, 10000));
    zvMbox_close(&mbox);

    reset();
    g_logLevel = ZV_LOG_OFF; // the warnings come out all the same
    fail(Call::MQ_OPEN, EMFILE, 5);
    errno = 0;
    EXPECT_EQ(-1, zvMbox_rxopen(NAME.c_str(), 2, &mbox));
    EXPECT_EQ(EMFILE, errno);
    EXPECT_EQ(-1, mbox.mqd);
    EXPECT_THAT(waits().sleeps, ElementsAre(10000, 10000, 10000, 10000, 10000));
    ASSERT_EQ(5u, log_messages().size());
    for (size_t i = 0; i < 5; ++i) {
        EXPECT_EQ("Warning: target Mbox=\"" + NAME + "\" errno=\"24\"  retry(" + std::to_string(i) + ")",
                  log_messages()[i]);
    }

    reset();
    EXPECT_EQ(-1, zvMbox_rxopen("no slash", 2, &mbox));
    EXPECT_EQ("target Mbox=\"no slash\" errno=\"Invalid argument\"", log_messages().back());
    EXPECT_EQ(0, zvMbox_create("no slash", 2));
    zvMbox_unlink(NAME.c_str());
    EXPECT_EQ(0, zvMbox_create_ext(NAME.c_str(), 3, 64));
    mq_attr attributes = {};
    ASSERT_EQ(0, zvMbox_txopen(NAME.c_str(), &mbox));
    ASSERT_EQ(0, mq_getattr(mbox.mqd, &attributes));
    EXPECT_EQ(3, attributes.mq_maxmsg);
    EXPECT_EQ(64, attributes.mq_msgsize);
    zvMbox_close(&mbox);
}

TEST_F(Mailbox, SharedOpenIsALockOnItsName)
{
    zvMbox_t holder;
    zvMbox_t second;
    ASSERT_EQ(0, zvMbox_rxopen_shared(NAME.c_str(), 2, &holder));
    EXPECT_EQ(-1, zvMbox_rxopen_shared(NAME.c_str(), 2, &second));
    EXPECT_EQ(EEXIST, errno);
    EXPECT_EQ(-1, second.mqd);
    EXPECT_THAT(waits().sleeps, ElementsAre(100000, 200000, 300000, 400000, 500000));
    std::vector<std::string> expected;
    for (int i = 1; i <= 5; ++i) {
        expected.push_back("Warning: Shared Mbox in use (retry) =\"" + NAME + "\" errno=\"File exists\"  retry(" +
                           std::to_string(i) + ")");
    }
    expected.push_back("Shared Mbox will not open =\"" + NAME + "\" errno=17\"File exists\"");
    EXPECT_EQ(expected, log_messages());
    EXPECT_TRUE(exists());

    int pauses = 0;
    on_wait([&] {
        if (++pauses == 3) {
            zvMbox_unlink(NAME.c_str());
        }
    });
    EXPECT_EQ(0, zvMbox_rxopen_shared(NAME.c_str(), 2, &second));
    EXPECT_EQ(3, pauses);
    zvMbox_close(&holder);
    zvMbox_close(&second);
}

TEST_F(Mailbox, ReportsWhatFails)
{
    zvMbox_t mbox;
    EXPECT_EQ(-1, zvMbox_txopen(NAME.c_str(), &mbox));
    EXPECT_EQ(ENOENT, errno);
    EXPECT_EQ(-1, zvMbox_unlink(NAME.c_str()));
    EXPECT_EQ(ENOENT, errno);
    EXPECT_THAT(log_messages(), ElementsAre("target Mbox=\"" + NAME + "\" errno=\"No such file or directory\"",
                                            "Mbox unlink fail=\"" + NAME + "\" errno=\"No such file or directory\""));
    EXPECT_TRUE(waits().sleeps.empty());

    Queue queue(NAME, 2, ZVMSG_MAX);
    queue.send({1, 2, 3});
    ASSERT_EQ(0, zvMbox_rxopen(NAME.c_str(), 2, &mbox));
    uint8_t small[100];
    EXPECT_EQ(-1, snzvMbox_timedreceive(small, sizeof small, &mbox));
    EXPECT_EQ(EMSGSIZE, errno);
    EXPECT_EQ(-1, snzvMbox_receive(small, -1, &mbox));
    EXPECT_EQ(EMSGSIZE, errno);
    EXPECT_EQ((Bytes{1, 2, 3}), queue.receive());
    fail(Call::MQ_RECEIVE, EINTR);
    EXPECT_EQ(-1, snzvMbox_receive(small, sizeof small, &mbox));
    EXPECT_EQ(EINTR, errno);
    EXPECT_EQ("target Mbox=\"" + NAME + "\" errno=\"Interrupted system call\"", log_messages().back());
    EXPECT_EQ(0, zvMbox_close(&mbox));

    EXPECT_EQ(-1, snzvMbox_timedreceive(small, sizeof small, &mbox)); // closed: nothing is waited for
    EXPECT_EQ(-1, zvMbox_send(small, 1, &mbox));
    EXPECT_EQ(EBADF, errno);
    EXPECT_EQ(-1, zvMbox_close(&mbox));
}

TEST_F(Mailbox, ATooLongMessageEndsTheProcess)
{
    zvMbox_t mbox = {};
    const Bytes message(1501);
    EXPECT_EXIT(
        {
            g_logLevel = ZV_LOG_INFO;
            signal(SIGABRT,
                   [](int) { _exit(log_lines().back().find(":len <= ZVMSG_MAX\n") != std::string::npos ? 7 : 1); });
            zvMbox_send(message.data(), 1501, &mbox);
        },
        testing::ExitedWithCode(7), "");
}

} // namespace
