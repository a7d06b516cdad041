"""accessibility.py IMAGE: finds the running program in the accessibility tree, reads its controls and
works it through them: opens the image, enters a directory, reads the display."""

import subprocess
import sys
import time

import pyatspi
from gi.repository import GLib

context = GLib.MainContext.default()


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
    sys.exit("This never came: " + what)


def everything(root):
    yield root
    for child in root:
        if child is not None:
            yield from everything(child)


def find(root, role, name):
    return next((item for item in everything(root)
                 if item.getRoleName() == role and item.name == name), None)


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


# The program tells of changes only where somebody listens.
pyatspi.Registry.registerEventListener(lambda event: None, "object:state-changed")


def program():
    return next((application for application in pyatspi.Registry.getDesktop(0)
                 if application is not None and application.name == "Tessel"), None)


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
dialog = until("the file dialog", lambda: next(
    (item for item in application if item.name.startswith("Open FAT Raw File")), None))
the("text", "File name:", dialog).queryEditableText().setTextContents(sys.argv[1])
act(the("push button", "Open", dialog))
window = the("frame", "FAT File System " + sys.argv[1], application)
the("label", "{SAMPLE     } ")

print("- choose a directory in the list, and enter it")
lines = the("list", "Directory list")
until("five lines", lambda: lines.childCount == 5)
lines.queryComponent().grabFocus()
docs = next(line for line in lines if line.name.startswith("[DOCS"))
lines.queryTable().addRowSelection(docs.getIndexInParent())
until("DOCS as the selected line", lambda: has(docs, pyatspi.STATE_SELECTED))

subprocess.run(["xdotool", "key", "Return"], check=True)
until("the way back", lambda: any(line.name.startswith("[..") for line in lines))
the("label", "DOCS")

print("- choose a mode, and read the display")
act(the("radio button", "Dump"))
until("Dump as the chosen mode", lambda: has(the("radio button", "Dump"), pyatspi.STATE_CHECKED))
act(the("push button", "Boot Sector"))
display = the("text", "Display").queryText()
until("the boot sector's report",
      lambda: "Bytes per Sector" in display.getText(0, display.characterCount))

print("- Exit")
act(the("menu item", "Exit"))
until("the end of the program", lambda: program() is None)
