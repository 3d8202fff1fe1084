#include "embedded/pdf/object_writer.h"

#include <algorithm>

namespace sheafwork::embedded::pdf {

namespace {

// Up to this much queued, objects wait for Drain() instead of a thread.
constexpr std::size_t kWithoutThreadBytes = 1 << 20;

}  // namespace

ObjectWriter::ObjectWriter(OutputFile& file, int level, std::size_t queueBytes)
    : file_(file), deflater_(level), queueBytes_(queueBytes) {}

ObjectWriter::~ObjectWriter() {
  if (!thread_.joinable()) return;
  {
    std::lock_guard lock(mutex_);
    stopping_ = true;
  }
  changed_.notify_all();
  thread_.join();
}

void ObjectWriter::Raw(std::string bytes) { Push({Kind::Raw, 0, std::move(bytes), {}}); }

void ObjectWriter::Object(int number, std::string body) {
  Push({Kind::Object, number, std::move(body), {}});
}

void ObjectWriter::Stream(int number, std::string dictionary, std::string data) {
  Push({Kind::Stream, number, std::move(dictionary), std::move(data)});
}

void ObjectWriter::EncodedStream(int number, std::string dictionary, std::string data) {
  Push({Kind::EncodedStream, number, std::move(dictionary), std::move(data)});
}

void ObjectWriter::Push(Task task) {
  const std::size_t bytes = task.head.size() + task.data.size();
  std::unique_lock lock(mutex_);
  if (!thread_.joinable() && queued_ + bytes > std::min(kWithoutThreadBytes, queueBytes_)) {
    thread_ = std::thread([this] { Run(); });  // waits for the lock
  }
  // An empty queue takes any task, however large.
  changed_.wait(lock, [&] { return queue_.empty() || queued_ + bytes <= queueBytes_; });
  queued_ += bytes;
  queue_.push_back(std::move(task));
  lock.unlock();
  changed_.notify_all();
}

bool ObjectWriter::Drain() {
  if (!thread_.joinable()) {
    WriteQueued();
    return !failed_;
  }
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [&] { return queue_.empty() && !busy_; });
  return !failed_;
}

void ObjectWriter::Run() {
  std::unique_lock lock(mutex_);
  for (;;) {
    changed_.wait(lock, [&] { return stopping_ || !queue_.empty(); });
    if (stopping_) return;
    Task task = std::move(queue_.front());
    queue_.pop_front();
    busy_ = true;
    const bool skip = failed_;
    lock.unlock();
    const bool ok = skip || Write(task);
    const std::size_t bytes = task.head.size() + task.data.size();
    task = Task{};  // free the data before the caller may queue more
    lock.lock();
    failed_ = failed_ || !ok;
    queued_ -= bytes;
    busy_ = false;
    changed_.notify_all();
  }
}

void ObjectWriter::WriteQueued() {
  // No thread: the queue is this caller's alone.
  for (Task& task : queue_) {
    if (failed_) break;
    failed_ = !Write(task);
  }
  queue_.clear();
  queued_ = 0;
}

bool ObjectWriter::Write(Task& task) {
  try {
    return Emit(task);
  } catch (...) {  // out of memory: the file is lost, not the program
    return false;
  }
}

bool ObjectWriter::Emit(Task& task) {
  if (task.kind == Kind::Raw) return file_.Write(task.head);
  if (offsets_.size() <= static_cast<std::size_t>(task.number)) {
    offsets_.resize(static_cast<std::size_t>(task.number) + 1, 0);
  }
  offsets_[static_cast<std::size_t>(task.number)] = file_.Offset();
  std::string head = std::to_string(task.number) + " 0 obj\n";
  if (task.kind == Kind::Object) {
    head += task.head;
    head += "\nendobj\n";
    return file_.Write(head);
  }
  const bool encoded = task.kind == Kind::EncodedStream;
  if (!encoded && !deflater_.Compress(task.data, compressed_)) return false;
  const std::string& data = encoded ? task.data : compressed_;
  head += "<< ";
  if (!task.head.empty()) {
    head += task.head;
    head += ' ';
  }
  head += "/Length ";
  head += std::to_string(data.size());
  head += encoded ? " >>\nstream\n" : " /Filter /FlateDecode >>\nstream\n";
  return file_.Write(head) && file_.Write(data) && file_.Write("\nendstream\nendobj\n");
}

}  // namespace sheafwork::embedded::pdf
