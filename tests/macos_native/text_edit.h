#pragma once

#include "platform/platform.h"
#include "tests/support/temporary_directory.h"

#include <string>

#include <sys/types.h>

namespace lomaris::test {

/// The reason why the tests cannot control an application, as one readable line; empty if they can.
[[nodiscard]] std::string missingForTextEdit(Platform& platform);

/// An instance of TextEdit for the tests, separate from the user's, with one document. Killed on destruction.
class TextEdit {
public:
    /// Opens a document with this text (UTF-8); returns once it is frontmost and has the keyboard focus. `platform`
    /// must have the permission and must outlive this object. Throws on failure.
    TextEdit(Platform& platform, const std::string& text);
    TextEdit(const TextEdit&) = delete;
    TextEdit& operator=(const TextEdit&) = delete;
    ~TextEdit() { end(); }

    [[nodiscard]] pid_t processIdentifier() const { return process_; }

    /// Brings the instance to the front; returns once it is frontmost.
    void bringToFront();

    /// Selects a part of the document; returns once it is selected.
    void select(TextRange range);

    /// The current text of the document.
    [[nodiscard]] Text contents();

    /// Kills the instance and returns once it has ended. Harmless if it has ended already.
    void end();

private:
    /// The text area; nullopt if there is none.
    [[nodiscard]] std::optional<Element> textArea();

    Platform& platform_;
    /// The directory of the document, removed once the application has ended.
    TemporaryDirectory directory_;
    pid_t process_ = 0;
};

}  // namespace lomaris::test
