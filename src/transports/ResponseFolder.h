// The response folder, and every name in it that the gateway gives: the responses under the names
// of their requests, and what is not to be seen yet beside them, under names that no client looks
// for. For the request NAME.osl these are
//
//   NAME.osl.part  reserved, or written just now: its request is in work
//   NAME.osl.done  finished, and waits while an older file of its name is in use
//   NAME.osl.note  a notice while it is written
//
// A name that such an ending would make too long for the system gets its last letter changed
// instead: NAME.osp, NAME.osd, NAME.osn. So everything that a gateway which was killed leaves
// behind says by its name what it is.
#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "gateway/Trace.h"
#include "transports/ResponseFile.h"
#include "transports/TransportSettings.h"
#include "util/Text.h"

namespace ostrel {

class ResponseFolder {
 public:
  /// The folders' paths are read anew with each use.
  ResponseFolder(const TransportSettings& settings, Trace& trace);

  /// For the response to the request file of this name; nothing is written yet.
  std::unique_ptr<ResponseFile> FileFor(TextView name) const;

  /// A response whose place is in use waits for it and is told of.
  void Place(std::unique_ptr<ResponseFile> response);
  /// Whether a finished response to a request of this name waits for its place.
  bool IsWaiting(TextView name) const;
  /// Tries the waiting ones again.
  void PlaceWaiting();

  /// An error file for a client whose request waits still. It gives way to a finished response.
  void WriteNotice(TextView name, float errorNumber, TextView message);

  /// Gives what a gateway left that was killed its end: a finished response is put in its place, a
  /// request that was in work gets an error, and what was reserved for one that is still
  /// there goes. What a running gateway has in work stays.
  void SettleLeftovers();

 private:
  struct Beside;
  static const Beside kReserved, kFinished, kNotice;

  static Text NameBeside(TextView name, const Beside& beside);
  static std::optional<Text> RequestOf(TextView nameBeside, const Beside& beside);

  template <typename Settle>
  void ForEachLeftover(const std::vector<Text>& names, const Beside& beside, Settle settle);
  void SettleFinished(const Text& name);
  void SettleReserved(const Text& name);
  void SettleNotice(const Text& name);
  int TellClientOfEnd(const Text& name);
  void AdoptFinished(const Text& name, const Beside& beside);
  Text PathOf(TextView name) const;
  Text PathBeside(TextView name, const Beside& beside) const;

  const TransportSettings& oSettings;
  Trace& oTrace;
  std::vector<std::unique_ptr<ResponseFile>> oWaiting;  // finished, but their places are in use
};

}  // namespace ostrel
