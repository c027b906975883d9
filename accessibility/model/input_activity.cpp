#include "accessibility/model/input_activity.h"

namespace lomaris {

InputActivitySnapshot sampleInputActivity(EventServices& events) {
    InputActivitySnapshot snapshot;
    snapshot.keyDownCount = events.inputCounter(InputEventType::keyDown);
    snapshot.leftMouseDownCount = events.inputCounter(InputEventType::leftMouseDown);
    snapshot.rightMouseDownCount = events.inputCounter(InputEventType::rightMouseDown);
    snapshot.otherMouseDownCount = events.inputCounter(InputEventType::otherMouseDown);
    return snapshot;
}

}  // namespace lomaris
