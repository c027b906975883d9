# Code signing on macOS. The system ties a permission to the code signature. With a certificate, that is the identifier
# and the certificate, so the permission survives a rebuild; without one, it is lost with each build.

set(LOMARIS_SIGNING_IDENTITY "$ENV{LOMARIS_SIGNING_IDENTITY}" CACHE STRING
    "Certificate to sign the tool with, as codesign takes it; empty for a signature without one")
set(LOMARIS_SIGNING_IDENTIFIER "lomaris.macos-bridge" CACHE STRING "Identifier in the signature of the tool")

# lomaris_sign(target): signs a program each time it is linked.
function(lomaris_sign target)
  if(LOMARIS_SIGNING_IDENTITY)
    set(identity --sign "${LOMARIS_SIGNING_IDENTITY}" --options runtime)
  else()
    set(identity --sign -)
  endif()
  add_custom_command(TARGET ${target} POST_BUILD
    COMMAND codesign --force ${identity} --identifier "${LOMARIS_SIGNING_IDENTIFIER}" --timestamp=none
            $<TARGET_FILE:${target}>
    VERBATIM)
endfunction()
