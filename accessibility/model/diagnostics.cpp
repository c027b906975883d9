#include "accessibility/model/diagnostics.h"

#include "text/characters.h"

namespace lomaris {

CompatibilityDiagnosticPayload::CompatibilityDiagnosticPayload(const SelectionPayload& selection)
    : applicationName(selection.applicationName),
      bundleIdentifier(selection.bundleIdentifier),
      selectionReadable(!selection.selectedText.empty()),
      selectionLength(characterCount(selection.selectedText)),
      selectionMethod(selection.selectionMethod),
      usesClipboardFallback(!selection.supportsDirectReplacement),
      supportsDirectReplacement(selection.supportsDirectReplacement),
      contextBeforeLength(characterCount(selection.contextBefore)),
      contextAfterLength(characterCount(selection.contextAfter)) {}

}  // namespace lomaris
