"""A stand-in for a desktop's panel: watcher and host of the StatusNotifierItem specification.

Prints what an item tells of itself, a JSON text a line, when it registers and whenever it says that
something is new. Each line of standard input calls the method of that name of the last item.
"""

import json
import sys

from gi.repository import Gio, GLib

WATCHER = "org.kde.StatusNotifierWatcher"
ITEM = "org.kde.StatusNotifierItem"
INTERFACE = f"""
<node><interface name="{WATCHER}">
  <method name="RegisterStatusNotifierItem"><arg type="s" direction="in"/></method>
  <method name="RegisterStatusNotifierHost"><arg type="s" direction="in"/></method>
  <property name="RegisteredStatusNotifierItems" type="as" access="read"/>
  <property name="IsStatusNotifierHostRegistered" type="b" access="read"/>
  <property name="ProtocolVersion" type="i" access="read"/>
  <signal name="StatusNotifierItemRegistered"><arg type="s"/></signal>
  <signal name="StatusNotifierHostRegistered"/>
</interface></node>"""


class Host:
    def __init__(self, bus):
        self.bus = bus
        self.items = []
        interface = Gio.DBusNodeInfo.new_for_xml(INTERFACE).interfaces[0]
        bus.register_object("/StatusNotifierWatcher", interface, self.call, self.property, None)
        bus.signal_subscribe(None, ITEM, None, None, None, Gio.DBusSignalFlags.NONE, self.news)
        Gio.bus_own_name_on_connection(bus, WATCHER, Gio.BusNameOwnerFlags.NONE, self.owned, None)
        GLib.io_add_watch(sys.stdin, GLib.IO_IN, self.command)

    def owned(self, bus, _):
        bus.emit_signal(None, "/StatusNotifierWatcher", WATCHER, "StatusNotifierHostRegistered", None)
        print("ready", flush=True)

    def property(self, _bus, _sender, _path, _interface, name):
        return {"RegisteredStatusNotifierItems": GLib.Variant("as", self.items),
                "IsStatusNotifierHostRegistered": GLib.Variant("b", True),
                "ProtocolVersion": GLib.Variant("i", 0)}[name]

    def call(self, bus, sender, _path, _interface, method, parameters, invocation):
        invocation.return_value(None)
        if method == "RegisterStatusNotifierItem":
            self.items.append(sender)
            bus.emit_signal(None, "/StatusNotifierWatcher", WATCHER, "StatusNotifierItemRegistered",
                            GLib.Variant("(s)", parameters.unpack()))
            self.describe(sender)

    def news(self, _bus, sender, *_):
        self.describe(sender)

    def describe(self, sender):
        def show(bus, result):
            try:
                told = bus.call_finish(result).unpack()[0]
            except GLib.Error:
                return  # it has gone
            print(json.dumps({"title": told["Title"], "toolTip": told["ToolTip"][2],
                              "sizes": [each[:2] for each in told["IconPixmap"]]}), flush=True)

        self.bus.call(sender, "/StatusNotifierItem", "org.freedesktop.DBus.Properties", "GetAll",
                      GLib.Variant("(s)", (ITEM,)), None, Gio.DBusCallFlags.NONE, -1, None, show)

    def command(self, stream, _):
        method = stream.readline().strip()
        if not method:
            return False
        self.bus.call(self.items[-1], "/StatusNotifierItem", ITEM, method,
                      GLib.Variant("(ii)", (1100, 10)), None, Gio.DBusCallFlags.NONE, -1, None, None)
        return True


Host(Gio.bus_get_sync(Gio.BusType.SESSION))
GLib.MainLoop().run()
