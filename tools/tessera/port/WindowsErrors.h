#pragma once

namespace Tool::port {

/// The value of errno that stands for an error of the system's.
int errnoOf(unsigned long systemError);

}  // namespace Tool::port
