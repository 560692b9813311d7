// The host's progress object.
#pragma once

/// A host derives from this class to follow an operation and to stop it. The library never creates,
/// copies or deletes such an object, and accepts null in its place. It calls the object only on the
/// thread that called the library, never inside a parallel loop.
///
/// A host overrides ReportPosition and KeepGoing. The four reserved operations are never called;
/// they keep those two at their places in the table of virtual operations.
class CObjProgress {
 public:
  virtual void Reserved1() {}
  virtual void Reserved2() {}
  virtual void Reserved3() {}
  virtual void Reserved4() {}

  /// Moves the host's progress bar.
  /// @param position between the `progressLow` and `progressHigh` of the call; operations that
  ///        report on 0..100 instead say so
  virtual void ReportPosition([[maybe_unused]] float position) {}

  /// Asked between pieces of work.
  /// @return non-zero to go on; 0 to stop. No position is reported after a 0, unless the operation
  /// says that it goes on.
  virtual int KeepGoing() { return 1; }

 protected:
  ~CObjProgress() = default;
};
