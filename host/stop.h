// Stopping on Ctrl-C and on a request to end.
#pragma once

/// From here on SIGINT and SIGTERM no longer end the program: they ask it to stop.
void HandleStopSignals();

/// The signal that asked for a stop; 0 while nobody did. Any thread may ask.
int StopSignal();
