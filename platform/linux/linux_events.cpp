#include "platform/linux/linux_events.h"

namespace lomaris {

bool LinuxEvents::preflightPostEventAccess() { return connection_.isUsable() && connection_.hasExtension("XTEST"); }

// There is nobody to ask: whoever may use the display may post events.
bool LinuxEvents::requestPostEventAccess() { return preflightPostEventAccess(); }

// No key can be created on this platform yet. The tool then fails with "could not create keyboard events" wherever it
// would have to press one, and nothing is posted.
std::unique_ptr<KeyStrokeEvents> LinuxEvents::createKeyStroke(KeyStroke /*keyStroke*/) { return nullptr; }

void LinuxEvents::postToSession(const KeyStrokeEvents& /*events*/) {}

void LinuxEvents::postToProcess(const KeyStrokeEvents& /*events*/, ProcessIdentifier /*processIdentifier*/) {}

std::uint32_t LinuxEvents::inputCounter(InputEventType /*type*/) { return inputClock_.timeOfLastInput().value_or(0); }

}  // namespace lomaris
