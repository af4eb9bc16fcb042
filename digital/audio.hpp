#pragma once

#include "core/session.hpp"

// Voice, ringing and tone commands of the system to a digital set. Gains are signed half-decibel steps.

namespace ztdecode {

void voice_mode(Session& session, Message& m, Text& out);
void beep(Session& session, Message& m, Text& out);
void mute(Session& session, Message& m, Text& out);
void feedback_dtmf(Session& session, Message& m, Text& out);
void key_release(Session& session, Message& m, Text& out);
void loudspeaker(Session& session, Message& m, Text& out);
void announce(Session& session, Message& m, Text& out);
void ring(Session& session, Message& m, Text& out);

}  // namespace ztdecode
