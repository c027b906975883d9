#pragma once

#include "platform/accessibility.h"
#include "platform/event_services.h"
#include "platform/pasteboard.h"
#include "platform/scheduling.h"
#include "platform/workspace.h"

namespace lomaris {

/// Everything the tool knows of the world outside of its process: five services, passed by reference from the
/// composition root to whoever needs them. The services live as long as the platform. A platform connects to nothing
/// before the first use of a service.
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
