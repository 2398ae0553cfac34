// Small files loaded into memory ahead of their turn, by threads of its own; or
// other work that is done with files ahead of their turn.
//
// The files are taken in the order in which they were added. Threads claim them
// a few at a time; who takes a file that nobody has claimed loads it, and who
// waits for one loads others meanwhile. The threads touch nothing but the files
// and their places here: they never call the host and never throw. What cannot
// be loaded here, for whatever reason, is for the user of this class to load.
//
// Only one thread may use an object.
//
// Tested by tests/unit/files/preloader_test.cpp
#pragma once

#include <array>
#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <span>
#include <string>
#include <thread>
#include <vector>

#include "platform/files.h"
#include "platform/memory.h"
#include "text/shared_text.h"

namespace zenfo {

struct PreloadedFile {
  std::string path;
  // Whether it was loaded, or the work was done; the rest has a meaning then.
  bool done = false;
  platform::KeptBuffer bytes;  // when loaded, with room for one more
  uint32_t size = 0;           // at least 1
  platform::FileStamp stamp;   // before it was read
  int32_t found = 0;           // what the work counted
};

// What is done with files instead of keeping their bytes.
class FileWork {
 public:
  virtual ~FileWork() = default;
  // False leaves the file to the user; so does an exception. `thread` counts
  // from 1 and is 0 for the user's own: each may call at the same time.
  virtual bool handle(PreloadedFile& file, platform::NearbyFolder& folder,
                      size_t thread) = 0;
};

class Preloader {
 public:
  static constexpr size_t kPlaces = 64;
  // How many files may be added and not yet taken: the place of the file taken
  // last is still in use.
  static constexpr size_t kMostWaiting = kPlaces - 1;

  // Starts as many of these threads as the system allows. Throws for lack of
  // memory. Without work, files are loaded.
  explicit Preloader(size_t threads, std::unique_ptr<FileWork> work = nullptr);
  // Ends all threads.
  ~Preloader();
  Preloader(const Preloader&) = delete;
  Preloader& operator=(const Preloader&) = delete;

  size_t threads() const { return threads_.size(); }
  // Files added and not yet taken.
  size_t waiting() const { return added_ - taken_; }
  // Adds files, no more than there is room for.
  void add(std::span<const SharedText> paths);
  // The path of the next file; there must be one.
  const std::string& next_path() const { return places_[place(taken_)].path; }
  // The next file, when it is loaded or has failed to; there must be one. Valid
  // until the next is taken.
  PreloadedFile& take();
  // Forgets the files that are not yet taken.
  void drop();

  // While it lives, the threads rest and have no file or folder open.
  class Rest {
   public:
    explicit Rest(Preloader& loader) : loader_(loader) { loader_.begin_rest(); }
    ~Rest() { loader_.end_rest(); }
    Rest(const Rest&) = delete;
    Rest& operator=(const Rest&) = delete;

   private:
    Preloader& loader_;
  };

 private:
  struct Place : PreloadedFile {
    std::atomic<bool> ready{false};
  };
  // The files [begin, end), claimed by one thread.
  struct Claim {
    size_t begin;
    size_t end;
  };
  using Folder = std::unique_ptr<platform::NearbyFolder>;

  static size_t place(size_t file) { return file % kPlaces; }
  void stop();
  void work(size_t thread) noexcept;
  Claim claim(size_t most);
  void load(const Claim& claim, size_t thread) noexcept;
  void finish(Place& place) noexcept;
  void wait_for(const Place& place);
  void begin_rest();
  void end_rest();

  std::unique_ptr<FileWork> work_;
  std::array<Place, kPlaces> places_;
  std::vector<Folder> folders_;  // by thread; the first is the user's
  std::vector<std::thread> threads_;
  size_t taken_ = 0;  // files taken, the user's alone

  std::mutex mutex_;  // guards what follows
  std::condition_variable to_do_;
  std::condition_variable done_;
  size_t added_ = 0;  // written by the user alone
  size_t claimed_ = 0;
  size_t busy_ = 0;  // threads that have claimed files
  bool resting_ = false;
  bool stopping_ = false;
  std::atomic<bool> user_waits_{false};
};

}  // namespace zenfo
