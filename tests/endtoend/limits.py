"""What is set in the gateway's process before it starts, as Gateway.spawn's preexec."""

import ctypes
import resource
import signal

PR_CAPBSET_DROP = 24
CAP_DAC_OVERRIDE, CAP_DAC_READ_SEARCH = 1, 2


def permissions_count():
    """Files' permissions hold for root as well; for anyone else they do anyway."""
    libc = ctypes.CDLL(None)
    for privilege in (CAP_DAC_OVERRIDE, CAP_DAC_READ_SEARCH):
        libc.prctl(PR_CAPBSET_DROP, privilege, 0, 0, 0)


def disk_full_after(size):
    """Every write beyond this position of a file fails, as on a full disk."""

    def limit():
        signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
        resource.setrlimit(resource.RLIMIT_FSIZE, (size, size))

    return limit
