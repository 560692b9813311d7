// The host's progress object.
#pragma once

/// A host derives from this class to follow a running operation and to stop it. The library never
/// creates, copies or deletes one, accepts a null pointer wherever one is taken, and calls it only
/// on the thread that entered the library, never inside a parallel loop.
///
/// A host overrides ReportPosition and KeepGoing. The four reserved operations keep the places of
/// those two in the table of virtual operations and are never called.
class CObjProgress {
 public:
  virtual void Reserved1() {}
  virtual void Reserved2() {}
  virtual void Reserved3() {}
  virtual void Reserved4() {}

  /// Moves the host's bar.
  /// @param position on the scale of the `progressLow` and `progressHigh` that the host passed in;
  /// some operations report on 0..100 instead, and say so.
  virtual void ReportPosition([[maybe_unused]] float position) {}

  /// Asked between pieces of work.
  /// @return non-zero to go on; 0 to stop. No position is reported after a 0, unless the operation
  /// says that it goes on.
  virtual int KeepGoing() { return 1; }

 protected:
  ~CObjProgress() = default;
};
