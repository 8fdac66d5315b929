"""Makes a cabinet, which a handheld installs when it is tapped.

Libraries go to \\Windows, where every application finds them, other files to the application's folder.
The files' times are SOURCE_DATE_EPOCH, so that the same files give the same cabinet.
"""

import os
import pathlib
import shutil
import subprocess
import tempfile

from setup_record import NOT_OVER_A_NEWER, SHARED_AND_COUNTED, setup_record

WINDOWS, PROGRAMS = "%CE2%", "%CE1%"


def name_in_cabinet(name, number):
    """Eight characters and the file's number, by which the setup record finds the file."""
    return name.split(".")[0].replace("-", "")[:8].rjust(8, "0") + ".%03d" % number


def make_cab(cab, application, libraries, own_files):
    files = [(library.name, [WINDOWS], SHARED_AND_COUNTED | NOT_OVER_A_NEWER) for library in libraries]
    files += [(file.name, [PROGRAMS, application], 0) for file in own_files]
    with tempfile.TemporaryDirectory() as folder:
        parts = [pathlib.Path(folder, name_in_cabinet("PAVONIX", 0))]
        parts[0].write_bytes(setup_record(application, "The Pavonix authors", files))
        for number, source in enumerate([*libraries, *own_files], 1):
            parts.append(pathlib.Path(folder, name_in_cabinet(source.name, number)))
            shutil.copyfile(source, parts[number])
        moment = int(os.environ["SOURCE_DATE_EPOCH"])
        for part in parts:
            os.utime(part, (moment, moment))
        in_order = [parts[0], *reversed(parts[1:])]  # the record first, then by descending number
        cab.unlink(missing_ok=True)
        subprocess.run(["gcab", "--create", "--nopath", cab, *in_order], check=True,
                       env={**os.environ, "TZ": "UTC"})
