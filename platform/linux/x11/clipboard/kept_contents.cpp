#include "platform/linux/x11/clipboard/kept_contents.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <utility>

namespace lomaris {

namespace {

/// All seals: nothing can change after the receiver has checked the file.
constexpr int seals = F_SEAL_SEAL | F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_WRITE;

/// The header of a target in the file. The name of the target, the name of the type and the bytes follow.
struct Head {
    std::uint64_t byteCount = 0;
    std::uint32_t targetLength = 0;
    std::uint32_t typeLength = 0;
    std::uint32_t format = 0;
    std::uint32_t isPromisedText = 0;
};

bool writeAll(int file, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = write(file, bytes.data(), bytes.size());
        if (written < 0 && errno != EINTR) {
            return false;
        }
        bytes.remove_prefix(written < 0 ? 0 : static_cast<std::size_t>(written));
    }
    return true;
}

bool writeTarget(int file, const KeptTarget& target) {
    const Head head{.byteCount = target.bytes->size(),
                    .targetLength = static_cast<std::uint32_t>(target.target.size()),
                    .typeLength = static_cast<std::uint32_t>(target.form.type.size()),
                    .format = target.form.format,
                    .isPromisedText = target.isPromisedText ? 1U : 0U};
    // Write a small target, as most are, with one call.
    std::string beginning(sizeof head, '\0');
    std::memcpy(beginning.data(), &head, sizeof head);
    beginning += target.target;
    beginning += target.form.type;
    constexpr std::size_t small = 4096;
    if (target.bytes->size() <= small) {
        return writeAll(file, beginning + *target.bytes);
    }
    return writeAll(file, beginning) && writeAll(file, *target.bytes);
}

/// Reads the contents of the file from the front.
class Pieces {
public:
    explicit Pieces(std::string_view rest) : rest_(rest) {}

    [[nodiscard]] bool isEmpty() const { return rest_.empty(); }

    [[nodiscard]] std::optional<std::string_view> take(std::uint64_t size) {
        if (size > rest_.size()) {
            return std::nullopt;
        }
        const std::string_view piece = rest_.substr(0, size);
        rest_.remove_prefix(size);
        return piece;
    }

private:
    std::string_view rest_;
};

std::optional<KeptTarget> takeTarget(Pieces& pieces) {
    Head head;
    const auto bytesOfHead = pieces.take(sizeof head);
    if (!bytesOfHead) {
        return std::nullopt;
    }
    std::memcpy(&head, bytesOfHead->data(), sizeof head);
    const auto target = pieces.take(head.targetLength);
    const auto type = target ? pieces.take(head.typeLength) : std::nullopt;
    const auto bytes = type ? pieces.take(head.byteCount) : std::nullopt;
    if (!bytes || (head.format != 8 && head.format != 16 && head.format != 32)) {
        return std::nullopt;
    }
    return KeptTarget{.target = std::string(*target),
                      .form = {.type = std::string(*type), .format = static_cast<std::uint8_t>(head.format)},
                      .bytes = std::make_shared<const Bytes>(*bytes),
                      .isPromisedText = head.isPromisedText != 0};
}

std::optional<std::vector<KeptTarget>> takeAll(Pieces pieces) {
    std::vector<KeptTarget> targets;
    while (!pieces.isEmpty()) {
        auto target = takeTarget(pieces);
        if (!target) {
            return std::nullopt;
        }
        targets.push_back(std::move(*target));
    }
    return targets;
}

}  // namespace

FileDescriptor writeKeptTargets(std::span<const KeptTarget> targets) {
    FileDescriptor file(memfd_create("lomaris-clipboard", MFD_CLOEXEC | MFD_ALLOW_SEALING));
    if (!file) {
        return {};
    }
    for (const KeptTarget& target : targets) {
        if (!writeTarget(file.number(), target)) {
            return {};
        }
    }
    return fcntl(file.number(), F_ADD_SEALS, seals) == 0 ? std::move(file) : FileDescriptor();
}

std::optional<std::vector<KeptTarget>> readKeptTargets(const FileDescriptor& file) {
    struct stat status {};
    if (!file || fcntl(file.number(), F_GET_SEALS) != seals || fstat(file.number(), &status) != 0) {
        return std::nullopt;
    }
    const auto size = static_cast<std::size_t>(status.st_size);
    if (size == 0) {
        return std::vector<KeptTarget>();
    }
    void* const memory = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, file.number(), 0);
    if (memory == MAP_FAILED) {
        return std::nullopt;
    }
    auto targets = takeAll(Pieces({static_cast<const char*>(memory), size}));
    munmap(memory, size);
    return targets;
}

KeptContents::KeptContents(std::vector<KeptTarget> targets, std::function<void()> whenTextRead)
    : targets_(std::move(targets)), whenTextRead_(std::move(whenTextRead)) {
    for (std::size_t place = 0; place < targets_.size(); ++place) {
        places_.try_emplace(targets_[place].target, place);
    }
}

std::vector<std::string_view> KeptContents::targets() const {
    std::vector<std::string_view> names;
    names.reserve(targets_.size());
    for (const KeptTarget& target : targets_) {
        names.emplace_back(target.target);
    }
    return names;
}

std::optional<ServedTarget> KeptContents::served(std::string_view target) {
    const auto found = places_.find(target);
    if (found == places_.end()) {
        return std::nullopt;
    }
    const KeptTarget& kept = targets_[found->second];
    if (kept.isPromisedText && whenTextRead_) {
        whenTextRead_();
    }
    return ServedTarget{kept.form, kept.bytes};
}

}  // namespace lomaris
