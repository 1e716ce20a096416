// What the shared library lets others see: whatever does not say so stays inside.
#pragma once

#define MAROVIA_API [[gnu::visibility("default")]]
