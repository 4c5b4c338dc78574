"""Serves the topic "Winword|System" from the LibreOffice Writer that the user has running.

    writer_dde.py <pipe> <process number> <launcher> [<option>...]

<launcher> with its options reaches the LibreOffice of that process number, which is asked to listen
on the pipe of that name. Standard input brings requests and standard output takes the answers, a JSON object a line;
an answer has the "id" of its request, and "text" unless it failed. Ends with its standard input or
with that LibreOffice.
"""

import contextlib
import json
import os
import queue
import signal
import subprocess
import sys
import threading
import time

import uno
import unohelper
from com.sun.star.connection import NoConnectException
from com.sun.star.datatransfer import DataFlavor, XTransferable
from com.sun.star.frame import XStatusListener
from com.sun.star.lang import XEventListener
from com.sun.star.util import URL

# Seconds.
LISTENING = 3  # from being asked to listen until it does
HANDING_OVER = 30  # for the launcher, which ends as soon as it has passed on what it was given


class EndWithOffice(unohelper.Base, XEventListener):
    def disposing(self, _source):
        os._exit(0)


class Text(unohelper.Base, XTransferable):
    """A text, as a clipboard offers it."""

    flavor = DataFlavor("text/plain;charset=utf-16", "Text", uno.getTypeByName("string"))

    def __init__(self, text):
        self.text = text

    def getTransferData(self, _flavor):
        return self.text

    def getTransferDataFlavors(self):
        return (self.flavor,)

    def isDataFlavorSupported(self, flavor):
        return flavor.MimeType == self.flavor.MimeType


class Status(unohelper.Base, XStatusListener):
    """Whether a command can be chosen now."""

    def __init__(self):
        self.enabled = False

    def statusChanged(self, event):
        self.enabled = event.IsEnabled

    def disposing(self, _source):
        pass


class Office:
    """The running LibreOffice. It is reached at the first request and stays connected."""

    def __init__(self, pipe, process, launcher):
        self.pipe = pipe
        self.process = process
        self.launcher = launcher
        self.messenger = None
        self.is_asked = False
        self.context = None
        self.desktop = None

    def ask_to_listen(self):
        # What tells where the user profile is must be the same for both.
        with open(f"/proc/{self.process}/environ", "rb") as file:
            environment = dict(variable.split(b"=", 1)
                               for variable in file.read().split(b"\0") if b"=" in variable)
        # A group of its own, so that nothing of it is left. It does not end where it has found
        # nobody and become a LibreOffice of its own, which nobody has asked for.
        self.messenger = subprocess.Popen(
            [*self.launcher, f"--accept=pipe,name={self.pipe};urp", "--nologo", "--nodefault",
             "--norestore"],
            stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
            env=environment, start_new_session=True)
        try:
            self.messenger.wait(HANDING_OVER)
        except subprocess.TimeoutExpired:
            self.recall()
            self.messenger.wait()
            raise
        self.messenger = None

    def recall(self):
        messenger = self.messenger
        if messenger is not None:
            with contextlib.suppress(ProcessLookupError):
                os.killpg(messenger.pid, signal.SIGKILL)

    def connect(self):
        if not self.is_asked:
            self.ask_to_listen()
            self.is_asked = True
        local = uno.getComponentContext().ServiceManager
        connector = local.createInstance("com.sun.star.connection.Connector")
        end = time.monotonic() + LISTENING
        while True:
            try:
                connection = connector.connect(f"pipe,name={self.pipe}")
                break
            except NoConnectException:
                if time.monotonic() > end:
                    raise
                time.sleep(0.05)
        factory = local.createInstance("com.sun.star.bridge.BridgeFactory")
        bridge = factory.createBridge("", "urp", connection, None)
        bridge.addEventListener(EndWithOffice())
        self.context = bridge.getInstance("StarOffice.ComponentContext")
        self.desktop = self.create("com.sun.star.frame.Desktop")

    def create(self, service):
        return self.context.ServiceManager.createInstanceWithContext(service, self.context)

    def open(self):
        if self.desktop is None:
            self.connect()
        # Needs what the windows need, so there is no answer while they hang.
        self.desktop.getCurrentFrame()
        return ""

    def writer_frames(self):
        """The windows with documents of Writer; first the one that the user was in last."""
        frames = self.desktop.getFrames()
        every = [self.desktop.getCurrentFrame(),
                 *(frames.getByIndex(i) for i in range(frames.getCount()))]
        return [frame for frame in every if is_writer(frame)]

    def topics(self):
        documents = []
        for frame in self.writer_frames():
            document = frame.getController().getModel()
            if document not in documents:
                documents.append(document)
        names = [document.getTitle().replace("\t", " ") for document in documents]
        return "\t".join(["System", "Default", *names])

    def is_enabled(self, frame, command):
        url = URL()
        url.Complete = command
        _, url = self.create("com.sun.star.util.URLTransformer").parseStrict(url)
        dispatch = frame.queryDispatch(url, "", 0)
        if dispatch is None:
            return False
        status = Status()
        dispatch.addStatusListener(status, url)
        dispatch.removeStatusListener(status, url)
        return status.enabled

    def paste(self, text):
        # Nothing would take the place of what is selected.
        if not text:
            raise ValueError
        frame = self.writer_frames()[0]
        # A modal dialog does not keep an insertion out of the document. It disables this command, and
        # nothing else that can be asked for tells of it.
        if not self.is_enabled(frame, ".uno:Quit"):
            raise PermissionError
        # What is inserted in this way is not kept out of protected places.
        if not any(self.is_enabled(frame, command) for command in (".uno:InsertPara", ".uno:Paste")):
            raise PermissionError
        # A carriage return by itself would become a character in a line, and the last line end is
        # taken for the end of the text.
        text = text.replace("\r\n", "\n").replace("\r", "\n")
        if text.endswith("\n"):
            text += "\n"
        frame.getController().insertTransferable(Text(text))
        return ""

    def serve(self, request):
        if request["do"] == "open":
            return self.open()
        if request["do"] == "request" and request["item"] == "Topics":
            return self.topics()
        if request["do"] == "execute" and request["command"] == "[EditPaste]":
            return self.paste(request["clipboard"])
        raise ValueError


def is_writer(frame):
    if frame is None or not frame.getContainerWindow().isVisible():
        return False
    controller = frame.getController()
    model = controller.getModel() if controller is not None else None
    return model is not None and model.supportsService("com.sun.star.text.TextDocument")


def answer(requests, office):
    while True:
        request = requests.get()
        result = {"id": request["id"]}
        try:
            result["text"] = office.serve(request)
        except Exception:  # whatever UNO throws: the request has failed
            pass
        print(json.dumps(result), flush=True)


def main():
    # The program that starts this may block signals.
    signal.pthread_sigmask(signal.SIG_SETMASK, [])
    signal.signal(signal.SIGINT, signal.SIG_IGN)
    office = Office(sys.argv[1], sys.argv[2], sys.argv[3:])
    requests = queue.Queue()
    threading.Thread(target=answer, args=(requests, office), daemon=True).start()
    for line in sys.stdin.buffer:
        requests.put(json.loads(line))
    office.recall()
    # Without waiting for a LibreOffice that hangs.
    os._exit(0)


main()
