#include <netdb.h>

#include <cerrno>
#include <utility>

#include "platform/posix/ErrorNumbers.h"

namespace ostrel::platform {
namespace {

constexpr int kSystemCallFailure = 10107;
constexpr int kHostNotFound = 11001;

constexpr std::pair<int, int> kErrors[] = {
    {EINTR, 10035},        {EAGAIN, 10035},          {EINPROGRESS, 10035},
    {EACCES, 10013},       {EPERM, 10013},           {EFAULT, 10014},
    {EINVAL, 10022},       {EMFILE, 10024},          {ENFILE, 10024},
    {EALREADY, 10037},     {EBADF, 10038},           {ENOTSOCK, 10038},
    {EDESTADDRREQ, 10039}, {EMSGSIZE, 10040},        {EPROTOTYPE, 10041},
    {ENOPROTOOPT, 10042},  {EPROTONOSUPPORT, 10043}, {ESOCKTNOSUPPORT, 10044},
    {EOPNOTSUPP, 10045},   {EPFNOSUPPORT, 10046},    {EAFNOSUPPORT, 10047},
    {EADDRINUSE, 10048},   {EADDRNOTAVAIL, 10049},   {ENETDOWN, 10050},
    {ENETUNREACH, 10051},  {ENETRESET, 10052},       {ECONNABORTED, 10053},
    {ECONNRESET, 10054},   {EPIPE, 10054},           {ENOBUFS, 10055},
    {ENOMEM, 10055},       {EISCONN, 10056},         {ENOTCONN, 10057},
    {ESHUTDOWN, 10058},    {ETIMEDOUT, 10060},       {ECONNREFUSED, 10061},
    {EHOSTDOWN, 10064},    {EHOSTUNREACH, 10065},
};

constexpr std::pair<int, int> kLookUpErrors[] = {
    {0, 0},
    {EAI_NONAME, 11001},
    {EAI_AGAIN, 11002},
    {EAI_FAIL, 11003},
    {EAI_NODATA, 11004},
    {EAI_MEMORY, 10055},
};

template <typename Table>
int Find(const Table& table, int key, int otherwise) {
  for (const auto& [own, number] : table) {
    if (own == key) return number;
  }
  return otherwise;
}

}  // namespace

int SocketErrorOf(int systemError) { return Find(kErrors, systemError, kSystemCallFailure); }

int LookUpErrorOf(int result) { return Find(kLookUpErrors, result, kHostNotFound); }

}  // namespace ostrel::platform
