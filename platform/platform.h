#pragma once

#include "platform/accessibility.h"
#include "platform/event_services.h"
#include "platform/pasteboard.h"
#include "platform/scheduling.h"
#include "platform/workspace.h"

namespace lomaris {

/// The desktop that the tool works on, as five services. Passed by reference from the composition root to the code that
/// needs it. The services exist as long as the platform. No connection is opened before the first use of a service.
class Platform {
public:
    Platform() = default;
    Platform(const Platform&) = delete;
    Platform& operator=(const Platform&) = delete;
    virtual ~Platform() = default;

    [[nodiscard]] virtual Accessibility& accessibility() = 0;
    [[nodiscard]] virtual Pasteboard& pasteboard() = 0;
    [[nodiscard]] virtual EventServices& events() = 0;
    [[nodiscard]] virtual Workspace& workspace() = 0;
    [[nodiscard]] virtual Scheduling& scheduling() = 0;
};

}  // namespace lomaris
