#pragma once
// Writes a PDF's objects to its file in the order they are handed over, on a
// thread of its own: streams are deflated there while the caller goes on
// building the next ones. The queue is bounded by the bytes it holds, so a
// caller faster than the compression waits instead of filling memory. A
// small document never starts the thread: what it queued is written when it
// is drained, by the caller, which is faster than starting a thread.

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "compress/zlib_stream.h"
#include "log/output_file.h"

namespace sheafwork::embedded::pdf {

class ObjectWriter {
 public:
  /// Writes to `file`, which must outlive the writer. Stream data waiting
  /// in the queue is kept under about `queueBytes`.
  ObjectWriter(OutputFile& file, int level, std::size_t queueBytes);
  /// Stops the thread; what is still queued is dropped (Drain() first to
  /// keep it).
  ~ObjectWriter();
  ObjectWriter(const ObjectWriter&) = delete;
  ObjectWriter& operator=(const ObjectWriter&) = delete;

  /// Bytes written as they are, outside any object (the header).
  void Raw(std::string bytes);
  /// Object `number`: `body` (a dictionary, an array...).
  void Object(int number, std::string body);
  /// Object `number`: a stream of `data`, deflated, with `dictionary`'s
  /// entries (without the << >>) before /Length and /Filter.
  void Stream(int number, std::string dictionary, std::string data);
  /// Object `number`: a stream of `data` already encoded as `dictionary`
  /// (its /Filter included) says, written as it is.
  void EncodedStream(int number, std::string dictionary, std::string data);

  /// Waits until everything handed over is in the file. Returns false when
  /// a write or a compression failed.
  bool Drain();
  /// Where each object starts in the file (0 for none yet); valid after
  /// Drain().
  const std::vector<std::uint64_t>& Offsets() const { return offsets_; }

 private:
  enum class Kind { Raw, Object, Stream, EncodedStream };
  struct Task {
    Kind kind = Kind::Raw;
    int number = 0;
    std::string head;
    std::string data;
  };

  void Push(Task task);
  void Run();
  void WriteQueued();
  /// Writes `task` to the file; false when that failed, out of memory
  /// included.
  bool Write(Task& task);
  bool Emit(Task& task);

  OutputFile& file_;
  Deflater deflater_;
  std::size_t queueBytes_;
  std::vector<std::uint64_t> offsets_;  // written by the thread only
  std::string compressed_;              // the thread's buffer

  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<Task> queue_;
  std::size_t queued_ = 0;  // bytes in queue_
  bool busy_ = false;       // the thread holds a task
  bool stopping_ = false;
  bool failed_ = false;
  std::thread thread_;  // started once the queue holds more than a small document
};

}  // namespace sheafwork::embedded::pdf
