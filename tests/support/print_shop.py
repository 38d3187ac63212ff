"""A printer of the Internet Printing Protocol and a CUPS scheduler with queues to it, on loopback, for the tests.

    print_shop.py

It writes one line, "ready SERVER BUS SPOOL LOG" or "none REASON", and ends with standard input. SERVER is the
scheduler's address, BUS that of the message bus over which printers are found (- for the system's), SPOOL the folder
in which the printer keeps the documents, LOG what it was asked. The printer is found as "Velora_Test"; the queues are
Office, Stopped, Refusing and Login.
"""
import os
import pathlib
import pwd
import shutil
import socket
import subprocess
import sys
import tempfile
import time

PATH = os.environ["PATH"] + ":/usr/sbin:/sbin"

BUS = """<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig><type>system</type><listen>unix:path={folder}/bus</listen><auth>EXTERNAL</auth>
<policy context="default"><allow user="*"/><allow own="*"/><allow send_destination="*"/><allow receive_sender="*"/>
</policy></busconfig>
"""
AVAHI = "[server]\nallow-interfaces=lo\nuse-ipv6=no\n"
SCHEDULER = """Listen 127.0.0.1:{port}
LogLevel warn
Browsing Off
BrowseLocalProtocols none
WebInterface No
<Location />
  Order allow,deny
  Allow all
</Location>
<Policy default>
  <Limit All>
    Order deny,allow
  </Limit>
</Policy>
<Policy login>
  <Limit Create-Job Print-Job Send-Document>
    AuthType Basic
    Require valid-user
    Order deny,allow
  </Limit>
  <Limit All>
    Order deny,allow
  </Limit>
</Policy>
"""
PLACES = """ServerRoot {folder}
RequestRoot {folder}/requests
CacheDir {folder}/cache
StateDir {folder}/state
AccessLog {folder}/access
ErrorLog {folder}/error
PageLog {folder}/page
SystemGroup root
User {user}
Group {group}
"""
QUEUE = """<Printer {name}>
Info {name}
DeviceURI ipp://127.0.0.1:{port}/ipp/print
State {state}
StateMessage {message}
Accepting {accepting}
OpPolicy {policy}
</Printer>
"""


def give_up(reason):
    print("none", reason, flush=True)
    raise SystemExit


def free_port():
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


def answers(port):
    with socket.socket() as probe:
        return probe.connect_ex(("127.0.0.1", port)) == 0


def wait_for(what, holds):
    end = time.monotonic() + 20
    while not holds():
        if time.monotonic() > end:
            give_up(f"{what} does not start")
        time.sleep(0.05)


class Shop:
    def __init__(self, folder):
        self.folder = folder
        self.running = []
        self.environment = {**os.environ, "PATH": PATH}

    def start(self, *command, **more):
        silent = {"stdin": subprocess.DEVNULL, "stdout": subprocess.DEVNULL, "stderr": subprocess.DEVNULL}
        self.running.append(subprocess.Popen(command, env=self.environment, **{**silent, **more}))

    def close(self):
        for process in reversed(self.running):
            process.terminate()
        for process in self.running:
            try:
                process.wait(5)
            except subprocess.TimeoutExpired:  # a daemon that does not hear is not waited for
                process.kill()
                process.wait()

    def has_avahi(self):
        check = subprocess.run(["avahi-daemon", "--check"], env=self.environment, stderr=subprocess.DEVNULL)
        return check.returncode == 0

    def open_bus(self):
        """Printers are announced over a bus; a machine that has none running gets one of its own for the while."""
        if self.has_avahi():
            return "-"
        if os.geteuid() != 0:
            give_up("avahi-daemon does not run, and only root can start it")
        address = f"unix:path={self.folder}/bus"
        (self.folder / "bus.conf").write_text(BUS.format(folder=self.folder))
        (self.folder / "avahi.conf").write_text(AVAHI)
        self.start("dbus-daemon", f"--config-file={self.folder}/bus.conf", "--nofork")
        wait_for("the bus", (self.folder / "bus").exists)
        self.environment["DBUS_SYSTEM_BUS_ADDRESS"] = address
        self.start("avahi-daemon", "-f", str(self.folder / "avahi.conf"), "--no-drop-root", "--no-chroot", "--no-rlimits")
        wait_for("avahi-daemon", self.has_avahi)
        return address

    def open_printer(self):
        port = free_port()
        for name in ("spool", "keys"):
            (self.folder / name).mkdir()
        self.start("ippeveprinter", "-k", "-vv", "-n", "localhost", "-p", str(port), "-f", "application/pdf",
                   "-d", str(self.folder / "spool"), "-K", str(self.folder / "keys"), "Velora Test",
                   stderr=open(self.folder / "printer", "w"))
        wait_for("ippeveprinter", lambda: answers(port))
        return port

    def open_scheduler(self, printer):
        port = free_port()
        user = pwd.getpwnam("lp") if os.geteuid() == 0 else pwd.getpwuid(os.geteuid())
        for name in ("requests", "cache", "state"):
            (self.folder / name).mkdir()
        (self.folder / "cupsd.conf").write_text(SCHEDULER.format(port=port))
        group = subprocess.run(["id", "-gn", user.pw_name], capture_output=True, text=True).stdout.strip()
        places = PLACES.format(folder=self.folder, user=user.pw_name, group=group)
        (self.folder / "cups-files.conf").write_text(places)
        queues = [("Office", "Idle", "", "Yes", "default", printer), ("Login", "Idle", "", "Yes", "login", printer),
                  ("Refusing", "Idle", "Moved to the second floor", "No", "default", printer),
                  ("Stopped", "Stopped", "Out of toner", "Yes", "default", printer)]
        (self.folder / "printers.conf").write_text("".join(
            QUEUE.format(name=n, state=s, message=m, accepting=a, policy=p, port=at) for n, s, m, a, p, at in queues))
        for place in [self.folder, *self.folder.iterdir()]:
            if place.name not in ("spool", "keys") and not place.is_socket():
                shutil.chown(place, user.pw_uid, user.pw_gid)
        self.start("cupsd", "-f", "-c", str(self.folder / "cupsd.conf"), "-s", str(self.folder / "cups-files.conf"))
        wait_for("cupsd", lambda: answers(port))
        return port


def main():
    missing = [p for p in ("dbus-daemon", "avahi-daemon", "ippeveprinter", "cupsd") if not shutil.which(p, path=PATH)]
    if missing:
        give_up("without " + ", ".join(missing))
    with tempfile.TemporaryDirectory(prefix="print-shop-") as name:
        folder = pathlib.Path(name)
        shop = Shop(folder)
        try:
            bus = shop.open_bus()
            scheduler = shop.open_scheduler(shop.open_printer())
            print(f"ready 127.0.0.1:{scheduler} {bus} {folder}/spool {folder}/printer", flush=True)
            sys.stdin.read()
        finally:
            shop.close()


if __name__ == "__main__":
    main()
