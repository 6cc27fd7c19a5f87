"""A desktop of our own: display, session bus, accessibility, home. All of it ends with the tour."""

import os
import pathlib
import shutil
import signal
import subprocess
import tempfile
import time

SCREEN = "2400x1000x24"  # room for the workbench's window and the container's beside it
LAUNCHERS = ["/usr/libexec/at-spi-bus-launcher", "/usr/lib/at-spi2-core/at-spi-bus-launcher"]


class Session:
    def __init__(self, log_folder, bus_config):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="zelvix-tour."))
        self.log_folder = log_folder
        self.started = []
        self.environment = self.make_environment()
        self.open_display()
        self.open_bus(bus_config)
        self.open_accessibility()

    def make_environment(self):
        home, runtime = self.folder / "home", self.folder / "run"
        folders = {
            "HOME": home, "XDG_RUNTIME_DIR": runtime, "XDG_DATA_HOME": home / ".local/share",
            "XDG_CONFIG_HOME": home / ".config", "XDG_CACHE_HOME": home / ".cache",
            "XDG_STATE_HOME": home / ".local/state", "XDG_DOCUMENTS_DIR": home / "Documents",
        }
        for path in folders.values():
            path.mkdir(parents=True, mode=0o700, exist_ok=True)
        (home / ".config/user-dirs.dirs").write_text('XDG_DOCUMENTS_DIR="$HOME/Documents"\n')
        dropped = ["WAYLAND_DISPLAY", "GTK_THEME", "GTK_A11Y", "NO_AT_BRIDGE", "AT_SPI_BUS_ADDRESS", "DBUS_STARTER_ADDRESS"]
        environment = {key: value for key, value in os.environ.items() if key not in dropped}
        environment.update({key: str(path) for key, path in folders.items()})
        environment.update(GDK_BACKEND="x11", LC_ALL="C.UTF-8")
        environment.setdefault("GSK_RENDERER", "cairo")
        return environment

    def start(self, name, command, **options):
        """Starts a program in a process group of its own, its output in a file of the log folder."""
        with open(self.log_folder / f"{name}.log", "ab") as log:
            process = subprocess.Popen(
                command, stdin=subprocess.DEVNULL, stdout=options.pop("stdout", log), stderr=log,
                env=self.environment, start_new_session=True, **options)
        self.started.append(process)
        return process

    def run(self, *command, limit=20):
        """What a short command prints; its failure raises."""
        return subprocess.run(
            command, env=self.environment, stdin=subprocess.DEVNULL, capture_output=True, timeout=limit, check=True).stdout

    def open_display(self):
        reading, writing = os.pipe()
        command = ["Xvfb", "-displayfd", str(writing), "-screen", "0", SCREEN, "-nolisten", "tcp", "-noreset"]
        self.start("display", command, pass_fds=[writing])
        os.close(writing)
        with open(reading, encoding="ascii") as pipe:
            number = pipe.readline().strip()
        if not number:
            raise RuntimeError("Xvfb gave no display; its words are in display.log")
        self.environment["DISPLAY"] = f":{number}"

    def open_bus(self, config):
        command = ["dbus-daemon", f"--config-file={config}", "--nofork", "--print-address"]
        process = self.start("bus", command, stdout=subprocess.PIPE)
        address = process.stdout.readline().decode().strip()
        if not address:
            raise RuntimeError("dbus-daemon gave no address; its words are in bus.log")
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = address

    def open_accessibility(self):
        """The launcher is started by hand, not by the bus: so its group is ours to end."""
        launcher = next((path for path in LAUNCHERS if os.path.exists(path)), None)
        if launcher is None:
            raise RuntimeError("at-spi2-core is not installed")
        self.start("accessibility", [launcher, "--launch-immediately"])
        query = ["busctl", f"--address={self.environment['DBUS_SESSION_BUS_ADDRESS']}", "status", "org.a11y.Bus"]
        for _ in range(100):
            if subprocess.run(query, capture_output=True, check=False).returncode == 0:
                return
            time.sleep(0.1)
        raise RuntimeError("the accessibility bus did not start; its words are in accessibility.log")

    def become_browser(self, record):
        """Makes a program the desktop's handler of links that only writes them down."""
        script = self.folder / "browser"
        script.write_text(f'#!/bin/sh\nprintf "%s\\n" "$@" >>"{record}"\n')
        script.chmod(0o700)
        applications = pathlib.Path(self.environment["XDG_DATA_HOME"]) / "applications"
        applications.mkdir(parents=True, exist_ok=True)
        (applications / "tour-browser.desktop").write_text(
            f"[Desktop Entry]\nType=Application\nName=Tour browser\nExec={script} %u\n"
            "MimeType=x-scheme-handler/http;x-scheme-handler/https;x-scheme-handler/about;\n")
        schemes = "".join(f"x-scheme-handler/{name}=tour-browser.desktop\n" for name in ["http", "https", "about"])
        config = pathlib.Path(self.environment["XDG_CONFIG_HOME"]) / "mimeapps.list"
        config.write_text(f"[Default Applications]\n{schemes}")

    def close(self):
        """Ends what was started, the last first, with all that it started in turn."""
        for process in reversed(self.started):
            end_group(process)
        shutil.rmtree(self.folder, ignore_errors=True)


def end_group(process, patience=5):
    for number, limit in [(signal.SIGTERM, patience), (signal.SIGKILL, patience)]:
        try:
            os.killpg(process.pid, number)
        except ProcessLookupError:
            pass
        try:
            process.wait(limit)
        except subprocess.TimeoutExpired:
            continue
        if not group_lives(process.pid):
            return


def group_lives(group):
    try:
        os.killpg(group, 0)
        return True
    except ProcessLookupError:
        return False
