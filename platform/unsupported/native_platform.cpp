#include "platform/native_platform.h"

#include "platform/inert_pasteboard_hold.h"

#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <string_view>
#include <thread>

// The platform of unsupported systems. It reports that this process may not use accessibility and that no application
// is frontmost, so every command ends with the usual message about the permission. Only scheduling works.
namespace lomaris {

namespace {

class NoElement final : public ElementReference {
public:
    [[nodiscard]] bool isSameElement(const ElementReference& other) const override { return this == &other; }
};

class NoAccessibility final : public Accessibility {
public:
    bool isProcessTrusted(TrustPrompt /*prompt*/) override { return false; }
    Element applicationElement(ProcessIdentifier /*processIdentifier*/) override { return noElement(); }
    Element systemWideElement() override { return noElement(); }
    AttributeAnswer copyAttribute(const Element& /*element*/, std::string_view /*attribute*/) override {
        return {AXError::apiDisabled, NullValue{}};
    }
    ElementAnswer copyElementAttribute(const Element& /*element*/, std::string_view /*attribute*/) override {
        return {AXError::apiDisabled, std::nullopt};
    }
    std::vector<std::vector<AttributeAnswer>> copyAttributes(std::span<const Element> elements,
                                                             std::span<const std::string_view> attributes) override {
        const AttributeAnswer refused{AXError::apiDisabled, NullValue{}};
        return {elements.size(), std::vector<AttributeAnswer>(attributes.size(), refused)};
    }
    AXError setAttribute(const Element& /*element*/, std::string_view /*attribute*/,
                         const AttributeValue& /*value*/) override {
        return AXError::apiDisabled;
    }
    SettableAnswer isAttributeSettable(const Element& /*element*/, std::string_view /*attribute*/) override {
        return {AXError::apiDisabled, false};
    }
    std::vector<SettableAnswer> areAttributesSettable(std::span<const Element> elements,
                                                      std::string_view /*attribute*/) override {
        return std::vector<SettableAnswer>(elements.size(), {AXError::apiDisabled, false});
    }
    AXError performAction(const Element& /*element*/, std::string_view /*action*/) override {
        return AXError::apiDisabled;
    }
    std::optional<ProcessIdentifier> processIdentifier(const Element& /*element*/) override { return std::nullopt; }
    bool containsIgnoringCase(TextView /*text*/, TextView /*word*/) override { return false; }

private:
    static Element noElement() { return Element(std::make_shared<NoElement>()); }
};

class NoPasteboard final : public Pasteboard {
public:
    std::unique_ptr<PasteboardHold> tryHold() override { return std::make_unique<InertPasteboardHold>(); }
    std::vector<std::unique_ptr<PasteboardItem>> items() override { return {}; }
    std::optional<Text> string() override { return std::nullopt; }
    std::int64_t changeCount() override { return 0; }
    void clearContents() override {}
    bool writeItems(std::vector<NewPasteboardItem> /*items*/) override { return false; }
};

class NoEvents final : public EventServices {
public:
    bool preflightPostEventAccess() override { return false; }
    bool requestPostEventAccess() override { return false; }
    std::unique_ptr<KeyStrokeEvents> createKeyStroke(KeyStroke /*keyStroke*/) override { return nullptr; }
    void postToSession(const KeyStrokeEvents& /*events*/) override {}
    void postToProcess(const KeyStrokeEvents& /*events*/, ProcessIdentifier /*processIdentifier*/) override {}
    std::uint32_t inputCounter(InputEventType /*type*/) override { return 0; }
};

class NoWorkspace final : public Workspace {
public:
    std::optional<RunningApplication> frontmostApplication() override { return std::nullopt; }
    std::optional<RunningApplication> runningApplication(ProcessIdentifier /*processIdentifier*/) override {
        return std::nullopt;
    }
};

class StandardCondition final : public Condition {
public:
    void lock() override { mutex_.lock(); }
    void unlock() override { mutex_.unlock(); }
    void waitUntil(Moment deadline) override {
        static_cast<void>(condition_.wait_until(mutex_, std::chrono::time_point<std::chrono::steady_clock>(deadline)));
    }
    void broadcast() override { condition_.notify_all(); }

private:
    std::mutex mutex_;
    std::condition_variable_any condition_;
};

/// A guard without effect, because no signals are caught here.
class InertGuard final : public TerminationGuard {
public:
    void holdOff() override {}
};

/// Scheduling with the standard library alone.
class StandardScheduling final : public Scheduling {
public:
    ~StandardScheduling() override {
        for (auto& thread : threads_) {
            thread.join();
        }
    }
    Moment now() override { return std::chrono::steady_clock::now().time_since_epoch(); }
    void sleep(Duration duration) override { std::this_thread::sleep_for(duration); }
    void runLoopSlice(Duration duration) override {
        const Moment end = now() + duration;
        while (const auto block = takeBlock()) {
            block();
        }
        sleep(end - now());
    }
    void runInBackground(std::function<void()> block) override { threads_.emplace_back(std::move(block)); }
    void runOnMainQueue(std::function<void()> block) override {
        const std::lock_guard guard(lock_);
        mainQueue_.push_back(std::move(block));
    }
    std::shared_ptr<Condition> makeCondition() override { return std::make_shared<StandardCondition>(); }
    std::unique_ptr<TerminationGuard> onTermination(std::function<void()> /*cleanUp*/) override {
        return std::make_unique<InertGuard>();
    }

private:
    std::function<void()> takeBlock() {
        const std::lock_guard guard(lock_);
        if (mainQueue_.empty()) {
            return nullptr;
        }
        auto block = std::move(mainQueue_.front());
        mainQueue_.pop_front();
        return block;
    }

    std::mutex lock_;
    std::deque<std::function<void()>> mainQueue_;
    std::vector<std::thread> threads_;
};

class UnsupportedPlatform final : public Platform {
public:
    Accessibility& accessibility() override { return accessibility_; }
    Pasteboard& pasteboard() override { return pasteboard_; }
    EventServices& events() override { return events_; }
    Workspace& workspace() override { return workspace_; }
    Scheduling& scheduling() override { return scheduling_; }

private:
    NoAccessibility accessibility_;
    NoPasteboard pasteboard_;
    NoEvents events_;
    NoWorkspace workspace_;
    StandardScheduling scheduling_;
};

}  // namespace

std::unique_ptr<Platform> nativePlatform(ProcessRole /*role*/, const std::string& /*clipboardKeeper*/) {
    return std::make_unique<UnsupportedPlatform>();
}

}  // namespace lomaris
