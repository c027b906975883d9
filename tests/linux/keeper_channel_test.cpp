#include "platform/linux/x11/clipboard/keeper_channel.h"
#include "platform/linux/x11/clipboard/kept_contents.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace lomaris {
namespace {

using Kind = KeeperMessage::Kind;

class KeeperChannels : public testing::Test {
protected:
    KeeperChannels() {
        KeeperChannelEnds ends = makeKeeperChannel();
        partner = KeeperChannel(std::move(ends.partner));
        keeper = KeeperChannel(std::move(ends.keeper));
    }

    /// The kinds of all messages that the keeper can receive now.
    std::vector<Kind> received() {
        std::vector<Kind> kinds;
        while (const auto message = keeper.receive()) {
            kinds.push_back(message->message.kind);
        }
        return kinds;
    }

    KeeperChannel partner;
    KeeperChannel keeper;
};

TEST_F(KeeperChannels, DeliverMessagesInOrder) {
    EXPECT_TRUE(partner.send({.kind = Kind::began}));
    EXPECT_TRUE(partner.send({.kind = Kind::ended}));
    EXPECT_EQ(received(), (std::vector{Kind::began, Kind::ended}));
    EXPECT_TRUE(keeper.isOpen());
}

TEST_F(KeeperChannels, DeliverMessagesSentBeforeTheEnd) {
    EXPECT_TRUE(partner.send({.kind = Kind::ended}));
    partner.close();
    EXPECT_EQ(received(), std::vector{Kind::ended});
    EXPECT_FALSE(keeper.isOpen());
}

TEST_F(KeeperChannels, DeliverMessagesOfAPartnerThatReadsNothing) {
    EXPECT_TRUE(keeper.send({.kind = Kind::textRead}));
    EXPECT_TRUE(partner.send({.kind = Kind::ended}));
    partner.close();
    EXPECT_EQ(received(), std::vector{Kind::ended});
    EXPECT_FALSE(keeper.isOpen());
}

TEST_F(KeeperChannels, CloseWhenTheOtherEndIsClosed) {
    keeper.close();
    EXPECT_FALSE(partner.send({.kind = Kind::began}));
    EXPECT_FALSE(partner.receive());
    EXPECT_FALSE(partner.isOpen());
}

TEST_F(KeeperChannels, DeliverMessagesAfterAFailedSend) {
    EXPECT_TRUE(partner.send({.kind = Kind::ended}));
    partner.close();
    EXPECT_FALSE(keeper.send({.kind = Kind::confirmed}));
    EXPECT_EQ(received(), std::vector{Kind::ended});
    EXPECT_FALSE(keeper.isOpen());
}

TEST_F(KeeperChannels, CloseOnAMessageOfAnotherSize) {
    KeeperChannelEnds ends = makeKeeperChannel();
    KeeperChannel other(std::move(ends.keeper));
    ASSERT_EQ(write(ends.partner.number(), "short", 5), 5);
    EXPECT_FALSE(other.receive());
    EXPECT_FALSE(other.isOpen());
}

KeptTarget target(std::string name, Bytes bytes) {
    return {.target = std::move(name),
            .form = {.type = "INTEGER", .format = 16},
            .bytes = std::make_shared<const Bytes>(std::move(bytes)),
            .isPromisedText = true};
}

TEST_F(KeeperChannels, TransferContents) {
    const FileDescriptor file = writeKeptTargets(std::vector{target("one", std::string("a\0b\n", 4)), target("", "")});
    ASSERT_TRUE(partner.send({.kind = Kind::publish, .serial = 7}, file.number()));
    const auto message = keeper.receive();
    ASSERT_TRUE(message);
    EXPECT_EQ(message->message.serial, 7U);
    EXPECT_NE(message->file.number(), file.number());
    const auto targets = readKeptTargets(message->file);
    ASSERT_TRUE(targets);
    ASSERT_EQ(targets->size(), 2U);
    EXPECT_EQ((*targets)[0].target, "one");
    EXPECT_EQ((*targets)[0].form, (PropertyForm{"INTEGER", 16}));
    EXPECT_EQ(*(*targets)[0].bytes, std::string("a\0b\n", 4));
    EXPECT_TRUE((*targets)[0].isPromisedText);
    EXPECT_EQ(*(*targets)[1].bytes, "");
}

/// A sealed file with these bytes.
FileDescriptor sealedFile(const std::string& bytes) {
    FileDescriptor file(memfd_create("test", MFD_ALLOW_SEALING));
    EXPECT_EQ(write(file.number(), bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
    EXPECT_EQ(fcntl(file.number(), F_ADD_SEALS, F_SEAL_SEAL | F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_WRITE), 0);
    return file;
}

TEST(KeptTargets, AreEmptyForAnEmptyFile) {
    const auto targets = readKeptTargets(sealedFile(""));
    ASSERT_TRUE(targets);
    EXPECT_EQ(targets->size(), 0U);
}

TEST(KeptTargets, AreRejectedIfTheFileIsNotSealed) {
    const FileDescriptor file(memfd_create("test", MFD_ALLOW_SEALING));
    EXPECT_FALSE(readKeptTargets(file));
    EXPECT_FALSE(readKeptTargets(FileDescriptor()));
}

TEST(KeptTargets, AreRejectedIfTheFileIsTruncated) {
    const FileDescriptor whole = writeKeptTargets(std::vector{target("name", "bytes")});
    std::string bytes(1000, '\0');
    const ssize_t size = pread(whole.number(), bytes.data(), bytes.size(), 0);
    ASSERT_GT(size, 0);
    for (std::size_t length = 1; length < static_cast<std::size_t>(size); ++length) {
        EXPECT_FALSE(readKeptTargets(sealedFile(bytes.substr(0, length)))) << length;
    }
    EXPECT_TRUE(readKeptTargets(sealedFile(bytes.substr(0, static_cast<std::size_t>(size)))));
}

TEST(KeptContents, ReportOnlyReadsOfThePromisedText) {
    int count = 0;
    KeptTarget plain = target("image/png", "picture");
    plain.isPromisedText = false;
    KeptContents contents({target("UTF8_STRING", "words"), plain}, [&count] { ++count; });
    EXPECT_EQ(contents.targets(), (std::vector<std::string_view>{"UTF8_STRING", "image/png"}));
    EXPECT_FALSE(contents.served("text/html"));
    EXPECT_EQ(*contents.served("image/png")->bytes, "picture");
    EXPECT_EQ(count, 0);
    EXPECT_EQ(*contents.served("UTF8_STRING")->bytes, "words");
    EXPECT_EQ(count, 1);
}

}  // namespace
}  // namespace lomaris
