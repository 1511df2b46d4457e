// SPDX-License-Identifier: MIT
#include "temporary_files.h"

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>

namespace ovra_host {

// A name in memory that a signal handler may read: fixed, and marked while it is valid.
struct Slot {
  std::atomic<bool> reserved = false;
  std::atomic<bool> valid = false;
  std::atomic<bool> in_making = false;
  std::array<char, PATH_MAX> path = {};
};

namespace {

constexpr std::array<int, 3> kSignals = {SIGINT, SIGTERM, SIGHUP};

// More than files are ever written at a time.
std::array<Slot, 64> slots;

// A signal removes all files: no more are made.
std::atomic<bool> ending = false;

Slot* ReserveSlot() {
  for (Slot& slot : slots) {
    if (!slot.reserved.exchange(true)) return &slot;
  }
  return nullptr;
}

// A file in the making is another thread's, which goes on: this one holds signals back meanwhile.
void EndBySignal(int signal) {
  ending = true;
  for (const Slot& slot : slots) {
    while (slot.in_making) continue;
    if (slot.valid) ::unlink(slot.path.data());
  }
  ::signal(signal, SIG_DFL);
  ::raise(signal);
}

// Holds the signals back while a file exists whose name is not marked yet.
class SignalsHeldBack {
 public:
  SignalsHeldBack() {
    sigset_t held;
    ::sigemptyset(&held);
    for (const int signal : kSignals) ::sigaddset(&held, signal);
    ::pthread_sigmask(SIG_BLOCK, &held, &before_);
  }
  ~SignalsHeldBack() { ::pthread_sigmask(SIG_SETMASK, &before_, nullptr); }
  SignalsHeldBack(const SignalsHeldBack&) = delete;
  SignalsHeldBack& operator=(const SignalsHeldBack&) = delete;

 private:
  sigset_t before_;
};

}  // namespace

void RemoveTemporaryFilesOnSignals() {
  for (const int signal : kSignals) {
    struct sigaction action = {};
    ::sigaction(signal, nullptr, &action);
    if (action.sa_handler == SIG_IGN) continue;  // as under nohup
    action.sa_handler = EndBySignal;
    ::sigaction(signal, &action, nullptr);
  }
}

TemporaryName::~TemporaryName() {
  if (slot_ == nullptr) return;
  if (slot_->valid.exchange(false)) ::unlink(slot_->path.data());
  slot_->reserved = false;
}

int TemporaryName::Create(const std::string& folder) {
  const std::string pattern = (folder.empty() ? "" : folder + "/") + ".ovra-XXXXXX";
  slot_ = ReserveSlot();
  if (slot_ == nullptr || pattern.size() >= slot_->path.size()) {
    errno = slot_ == nullptr ? EMFILE : ENAMETOOLONG;
    return -1;
  }
  const SignalsHeldBack held_back;
  slot_->in_making = true;
  if (ending) {
    slot_->in_making = false;
    while (true) ::pause();
  }
  std::snprintf(slot_->path.data(), slot_->path.size(), "%s", pattern.c_str());
  const int descriptor = ::mkostemp(slot_->path.data(), O_CLOEXEC);
  slot_->valid = descriptor >= 0;
  slot_->in_making = false;
  return descriptor;
}

bool TemporaryName::RenameTo(const std::string& path) {
  if (std::rename(slot_->path.data(), path.c_str()) != 0) return false;
  slot_->valid = false;
  return true;
}

}  // namespace ovra_host
