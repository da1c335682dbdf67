"""Stand-ins for two services of a desktop's session: notifications, and the portal's folder dialog.

Prints the title of each notification, a line each. Whoever asks for a folder gets the one that is
named by the argument.
"""

import pathlib
import sys

from gi.repository import Gio, GLib

INTERFACES = """
<node>
<interface name="org.freedesktop.Notifications">
  <method name="Notify">
    <arg type="s" direction="in"/><arg type="u" direction="in"/><arg type="s" direction="in"/>
    <arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="as" direction="in"/>
    <arg type="a{sv}" direction="in"/><arg type="i" direction="in"/>
    <arg type="u" direction="out"/>
  </method>
  <method name="GetCapabilities"><arg type="as" direction="out"/></method>
</interface>
<interface name="org.freedesktop.portal.FileChooser">
  <method name="OpenFile">
    <arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="a{sv}" direction="in"/>
    <arg type="o" direction="out"/>
  </method>
  <property name="version" type="u" access="read"/>
</interface>
</node>"""


class Services:
    def __init__(self, bus, folder):
        self.bus = bus
        self.folder = folder
        node = Gio.DBusNodeInfo.new_for_xml(INTERFACES)
        for interface, path, name in (
                (node.interfaces[0], "/org/freedesktop/Notifications",
                 "org.freedesktop.Notifications"),
                (node.interfaces[1], "/org/freedesktop/portal/desktop",
                 "org.freedesktop.portal.Desktop")):
            bus.register_object(path, interface, self.call, lambda *_: GLib.Variant("u", 4), None)
            Gio.bus_own_name_on_connection(bus, name, Gio.BusNameOwnerFlags.NONE, None, None)
        print("ready", flush=True)

    def call(self, _bus, sender, _path, _interface, method, parameters, invocation):
        if method == "GetCapabilities":
            invocation.return_value(GLib.Variant("(as)", (["body"],)))
        elif method == "Notify":
            print("notified:", parameters.unpack()[3], flush=True)
            invocation.return_value(GLib.Variant("(u)", (1,)))
        else:
            token = parameters.unpack()[2].get("handle_token", "t")
            caller = sender[1:].replace(".", "_")
            handle = f"/org/freedesktop/portal/desktop/request/{caller}/{token}"
            invocation.return_value(GLib.Variant("(o)", (handle,)))
            GLib.timeout_add(100, self.choose, sender, handle)

    def choose(self, sender, handle):
        answer = {"uris": GLib.Variant("as", [self.folder.as_uri()])}
        self.bus.emit_signal(sender, handle, "org.freedesktop.portal.Request", "Response",
                             GLib.Variant("(ua{sv})", (0, answer)))
        return False


Services(Gio.bus_get_sync(Gio.BusType.SESSION), pathlib.Path(sys.argv[1]))
GLib.MainLoop().run()
