// Stopping on Ctrl-C and on a request to end.
#pragma once

/// From now on SIGINT and SIGTERM do not end the program but ask it to stop.
void HandleStopSignals();

/// The signal that asked for a stop, 0 if none did. Any thread may call this.
int StopSignal();
