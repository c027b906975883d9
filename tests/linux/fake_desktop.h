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

/// The values of a reply to `Cache.GetItems`.
[[nodiscard]] Values listedObjects(std::vector<ListedObject> objects);

/// A workspace whose front application the test sets.
class FixedWorkspace final : public Workspace {
public:
    std::optional<RunningApplication> frontmostApplication() override { return front; }
    std::optional<RunningApplication> runningApplication(ProcessIdentifier) override { return std::nullopt; }

    std::optional<RunningApplication> front;
};

/// A desktop with a private bus, on which one application exposes the objects that a test adds. The application runs in
/// the process of the test and has its process identifier.
class FakeDesktop : public testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    /// Starts the peers. All replies must be set before.
    void start();

    /// Adds an object that returns these states and children.
    void addObject(const std::string& path, const std::vector<atspi::State>& objectStates,
                   const std::vector<std::string>& children = {});

    /// Lets the application list its objects with `Cache.GetItems`, as GTK does.
    void listObjects(std::vector<ListedObject> objects);

    /// Adds a text to an object. `characterCount` is the length that it reports; `selections` are pairs of positions.
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

/// The result of a copy that fails.
[[nodiscard]] inline AttributeAnswer failureOf(AXError error) { return {error, NullValue{}}; }

/// The result of a copy that succeeds.
[[nodiscard]] inline AttributeAnswer successOf(AttributeValue value) { return {AXError::success, std::move(value)}; }

}  // namespace lomaris::test
