#include "platform/linux/x11/clipboard/clipboard_targets.h"
#include "platform/native_platform.h"
#include "tests/platform/pasteboard_contract.h"
#include "tests/x11/clipboard_other_owner.h"
#include "tests/x11/clipboard_other_reader.h"
#include "tests/x11/clipboard_world.h"

namespace lomaris::test {
namespace {

class RealPasteboardWorld final : public PasteboardWorld {
public:
    Platform& platform() override { return *platform_; }

    void otherProgramCopies(std::vector<std::pair<PasteboardType, Bytes>> item) override {
        std::vector<OfferedTarget> offered;
        for (auto& [type, bytes] : item) {
            offered.push_back({targetOfType(type), {"", 8, std::move(bytes)}});
        }
        owner_.reset();
        owner_ = std::make_unique<OtherOwner>(std::move(offered));
    }

    std::optional<Bytes> otherProgramReads(const PasteboardType& type) override {
        const auto value =
            whileServing(platform_->scheduling(), [&type] { return OtherReader().read(targetOfType(type)); });
        return value ? std::optional(value->bytes) : std::nullopt;
    }

    bool otherProcessHolds() override {
        othersHold_ = other_->pasteboard().tryHold();
        return othersHold_ != nullptr;
    }

    void otherProcessReleases() override { othersHold_.reset(); }

    void endPlatform() override { platform_.reset(); }

private:
    std::unique_ptr<Platform> platform_ = nativePlatform();
    /// Has its own connection, so to the X server it is another process.
    std::unique_ptr<Platform> other_ = nativePlatform();
    std::unique_ptr<PasteboardHold> othersHold_;
    std::unique_ptr<OtherOwner> owner_;
};

INSTANTIATE_TEST_SUITE_P(Real, PasteboardContract,
                         testing::Values(PasteboardWorldMaker{"Linux",
                                                              [] { return std::make_unique<RealPasteboardWorld>(); }}),
                         contractParamName);

}  // namespace
}  // namespace lomaris::test
