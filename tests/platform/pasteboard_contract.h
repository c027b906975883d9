#pragma once

#include "platform/platform.h"
#include "tests/platform/contract_suite.h"

#include <optional>
#include <utility>
#include <vector>

namespace lomaris::test {

/// The world in which the pasteboard contract is watched: a platform, and another program that copies and pastes.
class PasteboardWorld {
public:
    virtual ~PasteboardWorld() = default;

    virtual Platform& platform() = 0;
    /// Another program puts one item with these types and bytes on the pasteboard; returns once it stands there.
    virtual void otherProgramCopies(std::vector<std::pair<PasteboardType, Bytes>> item) = 0;
    /// Another program asks for the bytes of `type`, while this process turns its run loop; the bytes it got.
    virtual std::optional<Bytes> otherProgramReads(const PasteboardType& type) = 0;
    /// Another process begins an operation with the pasteboard; false if it is in use.
    virtual bool otherProcessHolds() = 0;
    /// Ends that operation.
    virtual void otherProcessReleases() = 0;
    /// Ends the platform.
    virtual void endPlatform() = 0;
};

using PasteboardWorldMaker = WorldMaker<PasteboardWorld>;

class PasteboardContract : public ContractSuite<PasteboardWorld> {
protected:
    Pasteboard& pasteboard() { return world().platform().pasteboard(); }
};

}  // namespace lomaris::test
