#pragma once

#include "platform/accessibility.h"
#include "platform/linux/atspi/atspi.h"
#include "platform/linux/atspi/linux_accessibility.h"
#include "tests/linux/fake_peers.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace lomaris::test {

/// The list of all objects of an application.
[[nodiscard]] Values listedObjects(std::vector<ListedObject> objects);

/// A workspace whose front application is the one that a test says.
class FixedWorkspace final : public Workspace {
public:
    std::optional<RunningApplication> frontmostApplication() override { return front; }
    std::optional<RunningApplication> runningApplication(ProcessIdentifier) override { return std::nullopt; }

    std::optional<RunningApplication> front;
};

/// A desktop with its buses, on which one application shows objects that a test makes up. The application runs in the
/// process of the test, so that is whose process identifier it has.
class FakeDesktop : public testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    /// Starts the peers. Everything that they shall answer is told before.
    void start();

    /// An object of the application that answers its states and the children that it has.
    void addObject(const std::string& path, const std::vector<atspi::State>& objectStates,
                   const std::vector<std::string>& children = {});

    /// Lets the application list all its objects, as the toolkit does that is asked for that.
    void listObjects(std::vector<ListedObject> objects);

    /// Lets an object hold a text, with its claimed length; `selections` are pairs of positions.
    void addText(const std::string& path, const std::string& bytes, int characterCount,
                 const std::vector<std::pair<int, int>>& selections = {}, int caret = 0);

    [[nodiscard]] Element application() { return accessibility().applicationElement(processIdentifier_); }
    [[nodiscard]] Element object(const std::string& path);
    [[nodiscard]] TerminalAwareAccessibility& accessibility() { return *accessibility_; }
    [[nodiscard]] FakePeer& desktop() { return *desktop_; }
    [[nodiscard]] FakePeer& peer() { return *peer_; }
    [[nodiscard]] FixedWorkspace& workspace() { return workspace_; }
    [[nodiscard]] ProcessIdentifier processIdentifier() const { return processIdentifier_; }

    /// Copies one attribute of an object.
    [[nodiscard]] AttributeAnswer copy(const std::string& path, std::string_view attribute) {
        return accessibility().copyAttribute(object(path), attribute);
    }
    [[nodiscard]] AttributeAnswer copyFocused();

private:
    ProcessIdentifier processIdentifier_ = 0;
    std::unique_ptr<PrivateBus> bus_;
    std::unique_ptr<FakePeer> desktop_;
    std::unique_ptr<FakePeer> peer_;
    FixedWorkspace workspace_;
    std::unique_ptr<TerminalAwareAccessibility> accessibility_;
};

/// The answer for a copy that fails.
[[nodiscard]] inline AttributeAnswer failureOf(AXError error) { return {error, NullValue{}}; }

/// The answer for a copy that succeeds.
[[nodiscard]] inline AttributeAnswer successOf(AttributeValue value) { return {AXError::success, std::move(value)}; }

}  // namespace lomaris::test
