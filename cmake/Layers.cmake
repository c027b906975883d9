# Which folder may include headers of which other folders, itself included. The first entry that a file lies below counts,
# so inner folders come before outer ones; "platform" on the right is the boundary alone.
set(LOMARIS_LAYERS
  "text <- text"
  "json <- json text"
  "platform/keeping <- platform/keeping platform"
  "platform/posix <- platform/posix platform"
  "platform/linux/applications <- platform/linux/applications platform text"
  "platform/linux/process <- platform/linux/process platform/posix platform text"
  "platform/linux/dbus <- platform/linux/dbus platform text"
  "platform/linux/atspi <- platform/linux/atspi platform/linux/dbus platform/linux/process platform text"
  "platform/linux/x11/keyboard <- platform/linux/x11/keyboard platform/linux/x11 platform/linux/applications platform/posix
     platform text"
  "platform/linux/x11/clipboard <- platform/linux/x11/clipboard platform/linux/x11 platform/linux/process platform/keeping
     platform/posix platform text"
  "platform/linux/x11 <- platform/linux/x11 platform/linux/applications platform/linux/process platform text"
  "platform/linux <- platform/linux/atspi platform/linux/x11/keyboard platform/linux/x11/clipboard platform/linux/x11
     platform/linux/process platform/posix platform text"
  "platform/macos <- platform/macos platform/posix platform text"
  "platform/simulated <- platform/simulated platform/keeping platform text"
  "platform/unsupported <- platform/unsupported platform/posix platform text"
  "platform <- platform text"
  "accessibility/model <- accessibility/model json platform text"
  "accessibility/fallback <- accessibility/fallback accessibility/model platform text"
  "accessibility/adapter <- accessibility/adapter accessibility/fallback accessibility/model platform text"
  "accessibility/service <- accessibility/service accessibility/adapter accessibility/model platform text"
  "bridge <- bridge accessibility/service accessibility/model platform/posix platform text"
  "simulator <- simulator bridge accessibility/service accessibility/model platform/simulated platform/posix platform
     text")
