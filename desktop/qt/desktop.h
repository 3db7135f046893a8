#pragma once

namespace zelmo {

/// The program in its toolkit's application: shows the window until it is closed, or the message
/// that tells why there is none. The exit code, 0 in all cases.
int RunDesktop();

}  // namespace zelmo
