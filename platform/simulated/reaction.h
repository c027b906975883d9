#pragma once

#include "platform/pasteboard.h"
#include "platform/scheduling.h"
#include "platform/simulated/simulated_pasteboard_item.h"
#include "text/text.h"

#include <concepts>
#include <functional>
#include <type_traits>
#include <utility>
#include <vector>

namespace lomaris {

class SimulatedTextElement;

namespace simulated {
struct World;
}  // namespace simulated

/// What a simulated application does when a key stroke or an action reaches it. A plain value, made by the functions
/// below or from any function without arguments:
///
///     notes.onCopy(copiesSelectionOf(text).after(milliseconds(40)));
///     notes.onPasteInTurn({ignores(), pastesInto(text)});
///     notes.onDelete([&] { deletes += 1; });
///
/// An application is another process: it reacts at its own time, whether or not this process turns a run loop. Without
/// a delay it has reacted when the call that reached it returns. An application that quit or hangs by then does
/// nothing. A function that is given here must not wait, and what it holds must live as long as the desktop.
class Reaction {
public:
    using Act = std::function<void(simulated::World&)>;

    /// What happens at one moment, this much after the stimulus.
    struct Part {
        Duration delay{0};
        std::vector<Act> acts;
    };

    explicit Reaction(Act act) { parts_.push_back({Duration::zero(), {std::move(act)}}); }

    /// Anything that the script of the desktop can do.
    template <std::invocable Function>
    requires(!std::same_as<std::remove_cvref_t<Function>, Reaction>)
        // NOLINTNEXTLINE(google-explicit-constructor): a script hands over its functions as they are.
        Reaction(Function act)
        : Reaction(Act([act = std::move(act)](simulated::World&) mutable { act(); })) {}

    /// The same, this much later than without.
    [[nodiscard]] Reaction after(Duration delay) const;

    /// In the order in which they were given, no two of them with the same delay.
    [[nodiscard]] const std::vector<Part>& parts() const { return parts_; }

private:
    friend Reaction together(const std::vector<Reaction>& reactions);

    Reaction() = default;

    std::vector<Part> parts_;
};

/// All of these, each at its own delay; those with the same delay one after the other.
[[nodiscard]] Reaction together(const std::vector<Reaction>& reactions);

/// Nothing happens, as with a key that nobody scripted.
[[nodiscard]] Reaction ignores();

/// The application clears the pasteboard and writes one item with this plain text, which may be empty.
[[nodiscard]] Reaction copies(TextView text);

/// The application clears the pasteboard and writes one item with this type alone, an image for example.
[[nodiscard]] Reaction copiesOnly(PasteboardType type, Bytes bytes);

/// The application clears the pasteboard and writes these items.
[[nodiscard]] Reaction copiesItems(std::vector<CopiedItem> items);

/// The application copies what is selected in the text area when it reacts. Where nothing is, it leaves the pasteboard
/// alone.
[[nodiscard]] Reaction copiesSelectionOf(const SimulatedTextElement& element);

/// The application asks for the plain text on the pasteboard when it reacts, and writes it over the selection of the
/// text area once it has it: at once where the bytes stand there; when this process has kept its promise, which it does
/// in a run-loop slice or at its end; never where there is no plain text or the contents go away before that.
[[nodiscard]] Reaction pastesInto(const SimulatedTextElement& element);

/// The application deletes what is selected in the text area, or the code point before the insertion point where
/// nothing is.
[[nodiscard]] Reaction deletesSelectionOf(const SimulatedTextElement& element);

}  // namespace lomaris
