"""accessibility.py FOLDER: finds the running program in the accessibility tree, reads its controls and
works it through them: opens sample.img of the folder, enters a directory, reads the display."""

import subprocess
import sys
import time

import pyatspi
from gi.repository import GLib

sample = sys.argv[1] + "/sample.img"
hard_disk = sys.argv[1] + "/hard-disk.img"
told = []  # what the program has announced: (event, role, name, on or off)
context = GLib.MainContext.default()


def announced(event):
    try:
        told.append((str(event.type), event.source.getRoleName(), event.source.name, event.detail1))
    except Exception:  # the control has gone by now
        pass


def until(what, ask):
    end = time.monotonic() + 20
    while time.monotonic() < end:
        while context.iteration(False):
            pass
        try:
            answer = ask()
        except Exception:  # a control that came or went meanwhile
            answer = None
        if answer:
            return answer
        time.sleep(0.02)
    print("in the window:", *[item for item in everything(window)], sep="\n  ")
    print("announced:", *told[-20:], sep="\n  ")
    sys.exit("This never came: " + what)


def everything(root):
    yield root
    for child in root:
        if child is not None:
            yield from everything(child)


def role_of(item):
    name = item.getRoleName()
    return "push button" if name == "button" else name  # renamed in at-spi2 2.56


def find(root, role, name):
    for item in everything(root):
        if role_of(item) == role and item.name == name:
            return item
    return None


def the(role, name, root=None):
    return until(f"{role} {name!r}", lambda: find(root or window, role, name))


def act(item, wanted=("Press", "Toggle", "click")):
    action = item.queryAction()
    names = [action.getName(i) for i in range(action.nActions)]
    for i, name in enumerate(names):
        if name in wanted:
            action.doAction(i)
            return
    sys.exit(f"{item} offers only {names}")


def has(item, state):
    return item.getState().contains(state)


def heard(event, name, on=None):
    return any(t[0].startswith(event) and t[2] == name and on in (None, t[3]) for t in told)


for kind in ("object:state-changed", "window:activate"):
    pyatspi.Registry.registerEventListener(announced, kind)


def program():
    for application in pyatspi.Registry.getDesktop(0):
        if application is not None and application.name == "Tessel":
            return application
    return None


def answer_dialog(path):
    dialog = until("the file dialog", lambda: next(
        (item for item in application if item.name.startswith("Open FAT Raw File")), None))
    the("text", "File name:", dialog).queryEditableText().setTextContents(path)
    act(the("push button", "Open", dialog))


application = until("the program", program)
window = the("frame", "Tessel", application)

print("- every control has its role and its name")
for role, names in {
        "panel": ["Display"],
        "radio button": ["File info", "Display", "Dump", "SuperBlock"],
        "push button": ["STOP", "Boot Sector", "FAT0", "Root", "Directory"],
        "list": ["Directory list"],
        "text": ["Display"],
        "label": ["V 1.0.0"],
        "menu item": ["File", "Open", "Close", "Save Display", "Save File", "Save Directory",
                      "Exit", "Options", "Offset"]}.items():
    for name in names:
        the(role, name)
for item in everything(window):
    if has(item, pyatspi.STATE_FOCUSABLE) and not item.name:
        sys.exit(f"{item} can have the keyboard but has no name")
labels = [item.description for item in everything(window) if item.getRoleName() == "label"]
for meaning in ("Volume label", "File system type", "Version", "Current directory"):
    if meaning not in labels:
        sys.exit(f"No label tells that it is the {meaning}")

print("- Open, by the menu and the dialog")
act(the("menu item", "Open"))
answer_dialog(sample)
window = the("frame", "FAT File System " + sample, application)
the("label", "{SAMPLE     } ")
until("word that a button can be pressed",
      lambda: heard("object:state-changed:enabled", "Boot Sector", 1))

print("- choose a directory in the list, and enter it")
lines = the("list", "Directory list")
until("five lines", lambda: lines.childCount == 5)
lines.queryComponent().grabFocus()
docs = next(line for line in lines if line.name.startswith("[DOCS"))
lines.queryTable().addRowSelection(docs.getIndexInParent())
until("DOCS as the selected line", lambda: has(docs, pyatspi.STATE_SELECTED))
until("word of the selection",
      lambda: heard("object:state-changed:selected", docs.name, 1))

subprocess.run(["xdotool", "key", "Return"], check=True)
until("the way back", lambda: any(line.name.startswith("[..") for line in lines))
the("label", "DOCS")

print("- choose a mode, and read the display")
act(the("radio button", "Dump"))
until("Dump as the chosen mode", lambda: has(the("radio button", "Dump"), pyatspi.STATE_CHECKED))
until("word of the mode", lambda: heard("object:state-changed:checked", "Dump", 1))
act(the("push button", "Boot Sector"))
display = the("text", "Display").queryText()
until("the boot sector's report",
      lambda: "Bytes per Sector" in display.getText(0, display.characterCount))

print("- a message box comes forward")
told.clear()
act(the("menu item", "Close"))
window = the("frame", "FAT File System", application)
act(the("menu item", "Open"))
answer_dialog(__file__)
box = until("the message box", lambda: next(
    (item for item in application if item.getRoleName() in ("alert", "dialog")
     and find(item, "push button", "OK")), None))
until("the message as text", lambda: any(
    item.getRoleName() == "label" and item.name for item in everything(box)))
until("word of the message box", lambda: heard("window:activate", box.name))
act(find(box, "push button", "OK"))

print("- the volumes of a hard disk are offered, and one is chosen")
act(the("menu item", "Open"))
answer_dialog(hard_disk)
window = the("frame", "FAT File System " + hard_disk, application)
until("word of the partition table", lambda: any(
    "This file begins with a partition table: Options > Offset lists its volumes" in item.description
    for item in everything(window) if item.getRoleName() == "label"))
act(the("menu item", "Close"))
window = the("frame", "FAT File System", application)
act(the("menu item", "Offset"))
box = until("the box of Offset", lambda: find(application, "dialog", "Partition Offset"))
offset = the("combo box", "0", box)  # its name is its text
offered = ["0   whole file", "1048576   FAT16   4.0 MB   HARD_DISK"]
until("its lines", lambda: [item.name for item in everything(offset)
                            if item.getRoleName() == "list item"] == offered)
typed = the("text", "Input Offset (0 to 2GB)", box)
until("the keyboard in the line", lambda: has(typed, pyatspi.STATE_FOCUSED))
subprocess.run(["xdotool", "key", "Down"], check=True)
until("the volume in the line", lambda: typed.queryText().getText(0, -1) == "1048576")
until("what it is", lambda: typed.description == offered[1])
act(the("push button", "OK", box))
until("the end of the box", lambda: not find(application, "dialog", "Partition Offset"))
act(the("menu item", "Open"))
answer_dialog(hard_disk)
window = the("frame", "FAT File System " + hard_disk, application)
the("label", "{HARD_DISK  } ")

print("- Exit")
act(the("menu item", "Exit"))
until("the end of the program", lambda: program() is None)
