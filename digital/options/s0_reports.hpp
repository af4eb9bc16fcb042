#pragma once

#include "core/session.hpp"

namespace ztdecode {

// What the software of the S0 module reports of itself: its resets, refused commands and anomalies.
// byte 3: kind; any kind that is not one of the others is an anomaly
void s0_report(Session& session, const Message& m, Text& out);

// " etat N1= NAME" of a layer-1 state.
void layer1_state(std::uint8_t state, Text& out);

}  // namespace ztdecode
