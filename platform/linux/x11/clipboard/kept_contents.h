#pragma once

#include "platform/linux/x11/clipboard/served_contents.h"
#include "platform/posix/file_descriptor.h"

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <unordered_map>
#include <vector>

namespace lomaris {

/// One target of contents that the keeper serves or may restore.
struct KeptTarget {
    std::string target;
    PropertyForm form;
    SharedBytes bytes;
    /// True if a request for this target counts as reading the promised text.
    bool isPromisedText = false;
};

/// Writes targets to a new memory file (memfd) and seals it, so that the receiver of its descriptor can rely on the
/// contents. Empty if the system has not enough memory.
[[nodiscard]] FileDescriptor writeKeptTargets(std::span<const KeptTarget> targets);

/// Reads such a file. nullopt if it is not sealed or not well-formed.
[[nodiscard]] std::optional<std::vector<KeptTarget>> readKeptTargets(const FileDescriptor& file);

/// The contents that the keeper serves.
class KeptContents final : public ServedContents {
public:
    /// `whenTextRead` is called for each request for a target with the promised text; may be null.
    KeptContents(std::vector<KeptTarget> targets, std::function<void()> whenTextRead);

    [[nodiscard]] std::vector<std::string_view> targets() const override;
    [[nodiscard]] std::optional<ServedTarget> served(std::string_view target) override;

private:
    std::vector<KeptTarget> targets_;
    std::unordered_map<std::string_view, std::size_t> places_;
    std::function<void()> whenTextRead_;
};

}  // namespace lomaris
