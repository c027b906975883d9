#include "platform/linux/atspi/text_writing.h"

#include "platform/linux/atspi/atspi.h"
#include "platform/linux/atspi/attribute_failure.h"
#include "platform/linux/atspi/text_attributes.h"
#include "text/code_points.h"
#include "text/utf8.h"

#include <chrono>
#include <limits>
#include <string>
#include <thread>
#include <utility>

namespace lomaris {

namespace {

/// Qt expects the length argument of `InsertText` in UTF-16 units and pads the text up to it. Every other known toolkit
/// expects bytes or ignores the length.
constexpr std::string_view utf16LengthToolkit = "Qt";

/// An application that edits in another of its processes reports the change with a delay.
constexpr int readBackAttempts = 8;
constexpr auto readBackPause = std::chrono::milliseconds(20);

constexpr char16_t embeddedObject = u'\uFFFC';
constexpr char16_t paragraphSeparator = u'\u2029';

Text withPlainLineBreaks(TextView text) {
    Text result;
    result.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool isReturn = text[i] == u'\r';
        result.push_back(isReturn || text[i] == paragraphSeparator ? u'\n' : text[i]);
        if (isReturn && i + 1 < text.size() && text[i + 1] == u'\n') {
            ++i;
        }
    }
    return result;
}

bool isCut(TextView left, TextView right) {
    return !left.empty() && !right.empty() && isHighSurrogate(left.back()) && isLowSurrogate(right.front());
}

/// The whole text in three parts: before the selection, the selection, after it.
struct Pieces {
    Text before;
    Text selected;
    Text after;

    explicit Pieces(const TextState& state) {
        const auto start = static_cast<std::size_t>(state.selection.location);
        const auto length = static_cast<std::size_t>(state.selection.length);
        const Text& text = state.text.text();
        before = text.substr(0, start);
        selected = text.substr(start, length);
        after = text.substr(start + length);
    }

    /// True if the selection splits a surrogate pair: neither half could be verified or restored.
    [[nodiscard]] bool cutCharacters() const {
        const Text rest = selected + after;
        return isCut(before, rest) || isCut(before + selected, after);
    }

    [[nodiscard]] Text around(TextView middle) const { return before + Text(middle) + after; }
};

class SelectedTextWriter {
public:
    SelectedTextWriter(BusConnection& bus, const ObjectReference& object) : bus_(bus), object_(object) {}

    AXError write(TextView text) {
        const TextStateAnswer first = readTextState(bus_, object_);
        if (!first.state) {
            return first.error;
        }
        const Pieces pieces(*first.state);
        if (pieces.cutCharacters() || pieces.selected.find(embeddedObject) != Text::npos) {
            return AXError::failure;
        }
        if (const AXError error = askForToolkit(); error != AXError::success) {
            return error;
        }
        if (const AXError error = remove(*first.state, pieces); error != AXError::success) {
            return error;
        }
        return insertOrUndo(*first.state, pieces, text);
    }

private:
    AXError askForToolkit() {
        AXError error = AXError::success;
        const ObjectReference root{object_.name, atspi::rootPath};
        bus_.getProperty(root, atspi::application, "ToolkitName", [&](const BusReply& reply) {
            if (const auto name = reply.readStringProperty()) {
                takesUtf16Length_ = *name == utf16LengthToolkit;
            } else {
                resolveFailure(bus_, root, reply, [&error](AXError code) { error = code; });
            }
        });
        bus_.finish();
        return error;
    }

    /// Deletes the selected text. Succeeds only if exactly that text is gone.
    AXError remove(const TextState& state, const Pieces& pieces) {
        if (pieces.selected.empty()) {
            return AXError::success;
        }
        const AXError error = removeRange(state.text, state.selection);
        return error == AXError::success ? awaitText(state.text.text(), pieces.around({})) : error;
    }

    AXError insertOrUndo(const TextState& state, const Pieces& pieces, TextView text) {
        if (text.empty()) {
            return AXError::success;
        }
        // The removal does not change the positions up to the insertion.
        const std::int64_t start = state.selection.location;
        AXError error = insert(state.text.ownPosition(start), text);
        if (error == AXError::success) {
            error = awaitText(pieces.around({}), pieces.around(text));
        }
        if (error == AXError::success) {
            placeCaret(pieces.after.size());
            return error;
        }
        // If the application hangs, the calls of `undo` fail at once.
        undo(state, pieces, text);
        return error;
    }

    /// Restores the deleted text, unless by now there is other text in its place than the beginning of `text`.
    void undo(const TextState& before, const Pieces& pieces, TextView text) {
        const TextStateAnswer now = readTextState(bus_, object_);
        if (!now.state) {
            return;
        }
        const TextView whole = now.state->text.text();
        const std::size_t kept = pieces.before.size() + pieces.after.size();
        if (whole.size() < kept || !whole.starts_with(pieces.before) || !whole.ends_with(pieces.after)) {
            return;
        }
        const TextView arrived = whole.substr(pieces.before.size(), whole.size() - kept);
        if (!text.starts_with(arrived)) {
            return;
        }
        const TextRange part{before.selection.location, static_cast<std::int64_t>(arrived.size())};
        if (!arrived.empty() && removeRange(now.state->text, part) != AXError::success) {
            return;
        }
        if (!pieces.selected.empty()) {
            static_cast<void>(insert(before.text.ownPosition(part.location), pieces.selected));
        }
    }

    AXError removeRange(const ElementText& text, TextRange range) {
        const auto start = static_cast<std::int32_t>(text.ownPosition(range.location));
        const auto end = static_cast<std::int32_t>(text.ownPosition(range.location + range.length));
        return change("DeleteText", {start, end});
    }

    AXError insert(std::int64_t ownPosition, TextView text) {
        std::string bytes = utf8FromText(text);
        const std::size_t length = takesUtf16Length_ ? text.size() : bytes.size();
        if (length > static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max())) {
            return AXError::illegalArgument;
        }
        return change("InsertText",
                      {static_cast<std::int32_t>(ownPosition), std::move(bytes), static_cast<std::int32_t>(length)});
    }

    /// Requests a change. The boolean in the reply is ignored: applications return either value for a change they made.
    AXError change(const char* member, std::initializer_list<BusArgument> arguments) {
        AXError error = AXError::failure;
        bus_.call(object_, atspi::editableText, member, arguments, [&](const BusReply& reply) {
            if (reply.readBoolean()) {
                error = AXError::success;
            } else {
                resolveFailure(bus_, object_, reply, [&error](AXError code) { error = code; });
            }
        });
        bus_.finish();
        return error;
    }

    /// Reads the text until it is `wanted`. Fails if it is neither that nor `previous`, or after the last attempt.
    AXError awaitText(const Text& previous, const Text& wanted) {
        const Text wantedText = withPlainLineBreaks(wanted);
        for (int attempt = 0; attempt < readBackAttempts; ++attempt) {
            if (attempt > 0) {
                std::this_thread::sleep_for(readBackPause);
            }
            const TextStateAnswer now = readTextState(bus_, object_);
            if (!now.state) {
                return now.error == AXError::noValue ? AXError::failure : now.error;
            }
            if (withPlainLineBreaks(now.state->text.text()) == wantedText) {
                latest_ = *now.state;
                return AXError::success;
            }
            if (now.state->text.text() != previous) {
                return AXError::failure;
            }
        }
        return AXError::failure;
    }

    /// Sets the caret after the new text. Not every toolkit supports that; a failure does not matter.
    void placeCaret(std::size_t unitsAfter) {
        const auto position = static_cast<std::int64_t>(latest_->text.text().size() - unitsAfter);
        if (latest_->selection == TextRange{position, 0}) {
            return;
        }
        const auto own = static_cast<std::int32_t>(latest_->text.ownPosition(position));
        bus_.call(object_, atspi::text, "SetCaretOffset", {own}, [](const BusReply&) {});
        bus_.finish();
    }

    BusConnection& bus_;
    const ObjectReference& object_;
    bool takesUtf16Length_ = false;
    std::optional<TextState> latest_;
};

}  // namespace

AXError writeSelectedText(BusConnection& bus, const ObjectReference& object, TextView text) {
    if (text.find(u'\0') != TextView::npos) {
        return AXError::illegalArgument;
    }
    const Text travelling = textFromUtf8(utf8FromText(text));
    return SelectedTextWriter(bus, object).write(travelling);
}

}  // namespace lomaris
