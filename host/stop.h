// Stopping on Ctrl-C and on a request to end.
#pragma once

/// From now on the first SIGINT, SIGTERM or SIGHUP does not end the program but asks it to stop. A
/// second one deletes the temporary files and ends it. Signals that were ignored stay so.
void HandleStopSignals();

/// The signal that asked for a stop, 0 if none did. Any thread may call this.
int StopSignal();
