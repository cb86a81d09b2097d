"""Runs one of the tests written in Python with programs under Wine, without what cannot be proved so.

Usage: run_test.py TEST.py ARGUMENT...

What is left out is printed by name with its reason.
"""

import os
import resource
import runpy
import sys
import unittest

LOCKS = "a Python program's lock is a Unix one, which Wine does not know; share modes have a test in C++"
RIGHTS = "root may write everywhere, and rights and links of Unix are not those of Windows"
LIMITS = "a limit of a Unix process is told by a signal that ends Wine itself"
ADDRESSES = "Wine takes the whole of its address space at once"
HANDLES = "a standard handle that is closed is no error on Windows, and Unix' devices are not its"
SIGNALS = "Windows has no signal that a program is started to ignore"
STEPS = "a file takes the place of an open one in one step on Windows, in two under Wine"
BESIDE = "the file that the test copies starts the program, and is not the program beside which settings are looked for"
CERTIFICATES = "Wine checks no certificate without a CA file, and takes no address for a name in one"

LEFT_OUT = {
    "BadInput.test_memory": ADDRESSES,
    "Console.test_a_log_that_cannot_be_written_ends_no_job": BESIDE,
    "Console.test_output_that_cannot_be_written": HANDLES,
    "Console.test_output_that_takes_its_time": HANDLES,
    "Host.test_names_and_usage": "the old name was never on Windows",
    "NewGuids.test_a_file_in_use_is_waited_for_and_never_replaced": LOCKS,
    "NewGuids.test_a_folder_that_takes_no_file_has_a_copy_elsewhere_first": RIGHTS,
    "NewGuids.test_a_full_disk_and_a_read_only_one_leave_the_file": RIGHTS,
    "NewGuids.test_a_kill_at_any_moment_leaves_the_old_file_or_the_new_one": STEPS,
    "NewGuids.test_a_run_that_is_to_go_on_without_a_terminal_does": SIGNALS,
    "NewGuids.test_rights_and_links_stay": RIGHTS,
    "OcfSets.test_instants": "of the years of long ago Windows knows no rules, and gives them later ones",
    "Replacement.test_a_file_that_grows_too_large_and_a_full_disk": LIMITS,
    "Replacement.test_a_folder_and_a_file_that_may_not_be_written": RIGHTS,
    "Upload.test_certificates": CERTIFICATES,
    "Upload.test_log": BESIDE,
    "Upload.test_proxies": CERTIFICATES,
}


def without(run):
    def either(case, result=None):
        name = ".".join(case.id().split(".")[-2:])
        if name not in LEFT_OUT:
            return run(case, result)
        result.startTest(case)
        result.addSkip(case, LEFT_OUT[name])
        result.stopTest(case)
        print(f"LEFT OUT {name}: {LEFT_OUT[name]}")
        return result

    return either


def without_addresses(set_limit):
    return lambda kind, limits: None if kind == resource.RLIMIT_AS else set_limit(kind, limits)


# Where a test only sets a bound beside what it is about.
resource.setrlimit = without_addresses(resource.setrlimit)
# Times of day are told for a day of 1899, when other zones had a mean time that Windows does not know.
os.environ["VELMORA_TEST_ZONES"] = "UTC Europe/Berlin"
unittest.TestCase.run = without(unittest.TestCase.run)
sys.argv = sys.argv[1:]
sys.path.insert(0, os.path.dirname(os.path.abspath(sys.argv[0])))
runpy.run_path(sys.argv[0], run_name="__main__")
