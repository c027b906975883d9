#pragma once

#include "platform/platform.h"
#include "tests/platform/contract_suite.h"

#include <optional>
#include <utility>
#include <vector>

namespace lomaris::test {

/// The world of the pasteboard contract: a platform, and another program that copies and pastes.
class PasteboardWorld {
public:
    virtual ~PasteboardWorld() = default;

    virtual Platform& platform() = 0;
    /// Another program writes one item with these types and bytes; returns once it is on the pasteboard.
    virtual void otherProgramCopies(std::vector<std::pair<PasteboardType, Bytes>> item) = 0;
    /// Another program requests the bytes of `type` while this process runs its run loop; returns the bytes it got.
    virtual std::optional<Bytes> otherProgramReads(const PasteboardType& type) = 0;
    /// Another process begins an operation with the pasteboard; false if it is in use.
    virtual bool otherProcessHolds() = 0;
    /// Ends that operation.
    virtual void otherProcessReleases() = 0;
    /// Destroys the platform.
    virtual void endPlatform() = 0;
};

using PasteboardWorldMaker = WorldMaker<PasteboardWorld>;

/// What every platform must guarantee for `Pasteboard`.
class PasteboardContract : public ContractSuite<PasteboardWorld> {
protected:
    Pasteboard& pasteboard() { return world().platform().pasteboard(); }
};

}  // namespace lomaris::test
