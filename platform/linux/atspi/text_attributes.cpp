#include "platform/linux/atspi/text_attributes.h"

#include "platform/linux/atspi/atspi.h"
#include "platform/linux/atspi/attribute_failure.h"
#include "platform/linux/atspi/text_offsets.h"

#include <cmath>
#include <functional>
#include <memory>
#include <string>
#include <utility>

namespace lomaris {

namespace {

constexpr std::string_view paddingToolkit = "Gecko";

/// The data of one text element, collected until all replies have arrived.
struct TextQuestion {
    BusConnection& bus;
    ObjectReference object;
    AttributeAnswer& answer;
    std::int32_t selectionCount = 0;
    std::int32_t start = 0;
    std::int32_t end = 0;
    std::string bytes;
    std::int32_t characterCount = 0;
    int missing = 0;
    bool failed = false;

    TextQuestion(BusConnection& on, ObjectReference of, AttributeAnswer& into)
        : bus(on), object(std::move(of)), answer(into) {}

    /// Sets `answer` to the failure, unless another call has failed before.
    void fail(const BusReply& reply) {
        if (!failed) {
            failed = true;
            answerFailure(bus, object, reply, answer);
        }
    }

    void fail(AXError error) {
        failed = true;
        answer = {error, NullValue{}};
    }
};
using SharedQuestion = std::shared_ptr<TextQuestion>;

/// Runs `then` with the padding of the text in `question`. Requests the name of the toolkit only if the text may be
/// padded.
void withPadding(const SharedQuestion& question, std::function<void(AstralPadding)> then) {
    if (!looksPadded(question->bytes)) {
        then(AstralPadding::none);
        return;
    }
    const ObjectReference root{question->object.name, atspi::rootPath};
    question->bus.getProperty(
        root, atspi::application, "ToolkitName", [question, then = std::move(then)](const BusReply& reply) {
            const auto toolkit = reply.readStringProperty();
            if (!toolkit) {
                question->fail(reply);
                return;
            }
            then(*toolkit == paddingToolkit ? AstralPadding::byteOrderMarks : AstralPadding::none);
        });
}

/// Requests the text, its length and the offsets of the selection or the caret. Runs `finish` once, with the text and
/// the range, if all three succeed.
void queueTextAndRange(const SharedQuestion& question,
                       const std::function<void(const ElementText&, TextRange)>& finish) {
    BusConnection& bus = question->bus;
    const ObjectReference& object = question->object;
    const auto arrived = [question, finish] {
        if (--question->missing > 0 || question->failed) {
            return;
        }
        withPadding(question, [question, finish](AstralPadding padding) {
            const auto text = ElementText::read(question->bytes, question->characterCount, padding);
            const auto range = text ? text->range(question->start, question->end) : std::nullopt;
            if (!range) {
                question->fail(AXError::failure);
                return;
            }
            finish(*text, *range);
        });
    };

    question->missing = 3;
    const auto takeCaret = [question, arrived](const BusReply& reply) {
        const auto caret = reply.readIntegerProperty();
        if (!caret) {
            question->fail(reply);
        } else if (*caret < 0) {
            question->fail(AXError::noValue);
        } else {
            question->start = question->end = *caret;
        }
        arrived();
    };
    const auto takeSelection = [question, arrived](const BusReply& reply) {
        if (const auto selection = reply.readIntegerPair()) {
            question->start = selection->first;
            question->end = selection->second;
        } else {
            question->fail(reply);
        }
        arrived();
    };
    if (question->selectionCount == 0) {
        bus.getProperty(object, atspi::text, "CaretOffset", takeCaret);
    } else {
        bus.ask(object, atspi::text, "GetSelection", {std::int32_t{0}}, takeSelection);
    }
    bus.ask(object, atspi::text, "GetText", {std::int32_t{0}, std::int32_t{-1}},
            [question, arrived](const BusReply& reply) {
                if (auto bytes = reply.readString()) {
                    question->bytes = std::move(*bytes);
                } else {
                    question->fail(reply);
                }
                arrived();
            });
    bus.getProperty(object, atspi::text, "CharacterCount", [question, arrived](const BusReply& reply) {
        if (const auto count = reply.readIntegerProperty()) {
            question->characterCount = *count;
        } else {
            question->fail(reply);
        }
        arrived();
    });
}

/// Requests the number of selections first: without a selection, some toolkits return the caret as the selection.
void queueSelectionCount(const SharedQuestion& question, std::function<void()> then) {
    question->bus.ask(question->object, atspi::text, "GetNSelections", {},
                      [question, then = std::move(then)](const BusReply& reply) {
                          const auto count = reply.readInteger();
                          if (!count || *count < 0) {
                              question->fail(reply);
                              return;
                          }
                          question->selectionCount = *count;
                          then();
                      });
}

AttributeValue numberValue(double number) {
    constexpr double limit = 0x1p63;
    if (number >= -limit && number < limit && number == std::trunc(number)) {
        return static_cast<std::int64_t>(number);
    }
    return OtherNumber{number};
}

void queueNumber(const SharedQuestion& question, const BusReply& textReply) {
    // Only an object without text may have a number instead.
    const bool mayLackText = textReply.error() == AXError::attributeUnsupported;
    if (!mayLackText) {
        question->fail(textReply);
        return;
    }
    question->bus.getProperty(question->object, atspi::value, "CurrentValue", [question](const BusReply& reply) {
        if (const auto number = reply.readNumberProperty()) {
            question->answer = {AXError::success, numberValue(*number)};
        } else if (reply.failure() == BusFailure::refused) {
            // One toolkit returns this error for a property of an interface that the object lacks.
            question->fail(AXError::attributeUnsupported);
        } else {
            question->fail(reply);
        }
    });
}

}  // namespace

void queueSelectedText(BusConnection& bus, const ObjectReference& object, AttributeAnswer& answer) {
    const auto question = std::make_shared<TextQuestion>(bus, object, answer);
    queueSelectionCount(question, [question] {
        if (question->selectionCount == 0) {
            question->answer = {AXError::success, Text()};
            return;
        }
        queueTextAndRange(question, [question](const ElementText& text, TextRange range) {
            question->answer = {AXError::success, text.part(range)};
        });
    });
}

void queueSelectedTextRange(BusConnection& bus, const ObjectReference& object, AttributeAnswer& answer) {
    const auto question = std::make_shared<TextQuestion>(bus, object, answer);
    queueSelectionCount(question, [question] {
        queueTextAndRange(question, [question](const ElementText&, TextRange range) {
            question->answer = {AXError::success, range};
        });
    });
}

void queueValue(BusConnection& bus, const ObjectReference& object, AttributeAnswer& answer) {
    const auto question = std::make_shared<TextQuestion>(bus, object, answer);
    bus.ask(object, atspi::text, "GetText", {std::int32_t{0}, std::int32_t{-1}}, [question](const BusReply& reply) {
        auto bytes = reply.readString();
        if (!bytes) {
            queueNumber(question, reply);
            return;
        }
        question->bytes = std::move(*bytes);
        withPadding(question, [question](AstralPadding padding) {
            const auto text = ElementText::read(question->bytes, -1, padding);
            if (!text) {
                question->fail(AXError::failure);
                return;
            }
            question->answer = {AXError::success, text->text()};
        });
    });
}

TextStateAnswer readTextState(BusConnection& bus, const ObjectReference& object) {
    TextStateAnswer result;
    AttributeAnswer failure{AXError::failure, NullValue{}};
    const auto question = std::make_shared<TextQuestion>(bus, object, failure);
    queueSelectionCount(question, [question, &result] {
        queueTextAndRange(question, [&result](const ElementText& text, TextRange range) {
            result = {AXError::success, TextState{text, range}};
        });
    });
    bus.finish();
    if (!result.state) {
        result.error = failure.error;
    }
    return result;
}

}  // namespace lomaris
