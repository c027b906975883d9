#pragma once

#include "platform/platform.h"
#include "tests/support/temporary_directory.h"

#include <string>

#include <sys/types.h>

namespace lomaris::test {

/// What keeps the tests from driving an application, as a line for people; empty where nothing does.
[[nodiscard]] std::string missingForTextEdit(Platform& platform);

/// An instance of TextEdit of the tests' own, beside the user's, with a document. Killed with this object.
class TextEdit {
public:
    /// Opens a document with this text (UTF-8); returns once it is in front and has the keyboard. `platform` must have
    /// the permission and outlives this object. Throws where that does not happen.
    TextEdit(Platform& platform, const std::string& text);
    TextEdit(const TextEdit&) = delete;
    TextEdit& operator=(const TextEdit&) = delete;
    ~TextEdit() { end(); }

    [[nodiscard]] pid_t processIdentifier() const { return process_; }

    /// Brings it in front of all others; returns once it is there.
    void bringToFront();

    /// Selects a part of the document; returns once it is selected.
    void select(TextRange range);

    /// The document as it is now.
    [[nodiscard]] Text contents();

    /// Kills it and returns once it is gone. Harmless when it is gone already.
    void end();

private:
    /// The text area, or none.
    [[nodiscard]] std::optional<Element> textArea();

    Platform& platform_;
    /// First, so that it goes when the application has ended.
    TemporaryDirectory directory_;
    pid_t process_ = 0;
};

}  // namespace lomaris::test
