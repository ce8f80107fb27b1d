"""python3-dbusmock's NetworkManager, with a radio whose access points answer as their names say."""
import dbus
import dbusmock
from dbusmock.templates.networkmanager import *  # noqa: F401,F403 - its methods become this template's
from dbusmock.templates import networkmanager as base
from gi.repository import GLib

BUS_NAME, MAIN_OBJ, SYSTEM_BUS, IS_OBJECT_MANAGER = base.BUS_NAME, base.MAIN_OBJ, base.SYSTEM_BUS, True
DEVICE = "/org/freedesktop/NetworkManager/Devices/radio"
IP6 = "/org/freedesktop/NetworkManager/IP6Config/1"
PASSPHRASE = "correct horse"
NO_SECRETS, DHCP_FAILED, USER_REQUESTED = 7, 17, 39
PSK, ENTERPRISE, SAE = 0x100, 0x200, 0x400
# name: BSSID's last byte, strength, flags, WPA flags, RSN flags
ACCESS_POINTS = {
    "home": (1, 80, 1, 0, PSK), "open": (2, 61, 0, 0, 0), "old": (3, 20, 1, 0, 0), "wpa": (4, 30, 1, PSK, 0),
    "new": (5, 100, 1, 0, SAE), "both": (6, 40, 1, 0, PSK | SAE), "office": (7, 50, 1, 0, ENTERPRISE),
    "no-dhcp": (8, 50, 0, 0, 0), "silent": (9, 50, 0, 0, 0), "\xff\x01raw": (10, 0, 0, 0, 0), "known": (11, 50, 1, 0, PSK),
}


def change(path, interface, properties):
    """As UpdateProperties, which cannot take object paths and structures."""
    changed = dbusmock.get_object(path)
    changed.props[interface].update(properties)
    changed.EmitSignal(dbus.PROPERTIES_IFACE, "PropertiesChanged", "sa{sv}as",
                       [interface, dbus.Dictionary(properties, signature="sv"), dbus.Array([], signature="s")])


def set_device(state, reason, active):
    device = dbusmock.get_object(DEVICE)
    old = device.Get(base.DEVICE_IFACE, "State")
    point = active and dbusmock.get_object(active).Get(base.ACTIVE_CONNECTION_IFACE, "SpecificObject")
    change(DEVICE, base.WIRELESS_DEVICE_IFACE, {"ActiveAccessPoint": dbus.ObjectPath(point or "/")})
    change(DEVICE, base.DEVICE_IFACE, {
        "ActiveConnection": dbus.ObjectPath(active or "/"), "State": dbus.UInt32(state),
        "Ip6Config": dbus.ObjectPath(IP6 if state == 100 else "/"),
        "StateReason": dbus.Struct((dbus.UInt32(state), dbus.UInt32(reason)), signature="uu")})
    device.EmitSignal(base.DEVICE_IFACE, "StateChanged", "uuu", [dbus.UInt32(state), old, dbus.UInt32(reason)])


def end(active, reason):
    set_device(base.DeviceState.FAILED if reason != USER_REQUESTED else base.DeviceState.DEACTIVATING, reason, active)
    change(active, base.ACTIVE_CONNECTION_IFACE, {"State": dbus.UInt32(4)})
    set_device(base.DeviceState.DISCONNECTED, reason, None)
    change(base.MANAGER_OBJ, base.MANAGER_IFACE, {"ActiveConnections": dbus.Array([], signature="o")})
    dbusmock.get_object(base.MANAGER_OBJ).ended.append(active)
    return False


def remove_ended():
    """Not at once, so that a client that is told of an activation still finds it."""
    manager = dbusmock.get_object(base.MANAGER_OBJ)
    while manager.ended:
        active = manager.ended.pop()
        manager.object_manager_emit_removed(active)
        manager.RemoveObject(active)


def deactivate(_manager, active):
    end(active, USER_REQUESTED)
    remove_ended()


def delete(profile):
    remove_ended()
    base.ConnectionDelete(profile)


def succeed(active):
    set_device(base.DeviceState.ACTIVATED, 0, active)
    change(active, base.ACTIVE_CONNECTION_IFACE, {
        "State": dbus.UInt32(2), "Ip6Config": dbus.ObjectPath(IP6)})
    return False


def activate(manager, connection, _device, point):
    name = bytes(dbusmock.get_object(point).Get(base.ACCESS_POINT_IFACE, "Ssid")).decode()
    settings = dbusmock.get_object(connection).settings
    psk = settings.get("802-11-wireless-security", {}).get("psk", PASSPHRASE)
    remove_ended()
    manager.attempts += 1
    active = manager.AddActiveConnection([], connection, point, f"attempt{manager.attempts}", 1)
    running = dbusmock.get_object(active)
    running.AddProperties(base.ACTIVE_CONNECTION_IFACE, {"Ip6Config": dbus.ObjectPath("/")})
    change(active, base.ACTIVE_CONNECTION_IFACE, {"Devices": dbus.Array([dbus.ObjectPath(DEVICE)], signature="o")})
    set_device(base.DeviceState.CONFIG, 0, active)
    if psk != PASSPHRASE:
        GLib.idle_add(end, active, NO_SECRETS)
    elif name == "no-dhcp":
        GLib.idle_add(end, active, DHCP_FAILED)
    elif name != "silent":
        GLib.idle_add(succeed, active)
    return dbus.ObjectPath(active)


def add_and_activate(manager, settings, device, point):
    settings = {name: dict(values) for name, values in settings.items()}
    ssid = dbusmock.get_object(point).Get(base.ACCESS_POINT_IFACE, "Ssid")
    settings.setdefault("802-11-wireless", {})["ssid"] = ssid
    settings.setdefault("connection", {}).update({"type": "802-11-wireless", "id": "new"})
    connection = add_profile(settings)
    return (dbus.ObjectPath(connection), activate(manager, connection, device, point))


def add_profile(settings):
    path = dbusmock.get_object(base.SETTINGS_OBJ).SettingsAddConnection(settings)
    profile = dbusmock.get_object(path)
    profile.ConnectionDelete = delete
    profile.AddMethod(base.CSETTINGS_IFACE, "Update2", "a{sa{sv}}ua{sv}", "a{sv}",
                      "self.ConnectionUpdate(self, args[0]); ret = dbus.Dictionary({}, signature='sv')")
    return path


def load(mock, parameters):
    base.load(mock, {**parameters, "Version": "1.42.4", "Connectivity": dbus.UInt32(4)})
    manager = dbusmock.get_object(base.MANAGER_OBJ)
    manager.attempts, manager.ended = 0, []
    manager.activate_connection, manager.add_and_activate_connection = activate, add_and_activate
    manager.deactivate_connection = deactivate
    manager.AddWiFiDevice("radio", "tv-wlan", base.DeviceState.DISCONNECTED)
    add_addresses(manager)
    add_access_points(manager)
    device = dbusmock.get_object(DEVICE)
    device.AddProperties(base.WIRELESS_DEVICE_IFACE, {"ActiveAccessPoint": dbus.ObjectPath("/"), "LastScan": dbus.Int64(0)})
    device.AddProperties(base.DEVICE_IFACE, {"Ip6Config": dbus.ObjectPath("/")})
    scan = ("self.UpdateProperties('%s', {'LastScan': dbus.Int64(5)})" % base.WIRELESS_DEVICE_IFACE)
    device.AddMethod(base.WIRELESS_DEVICE_IFACE, "RequestScan", "a{sv}", "", scan)
    add_profile({"connection": {"type": "802-11-wireless", "id": "known", "uuid": "5c9a1d2e-7b34-4f0a-8e61-2a3b4c5d6e7f"},
                 "802-11-wireless": {"ssid": dbus.ByteArray(b"known")},
                 "802-11-wireless-security": {"key-mgmt": "wpa-psk"}})


def add_addresses(manager):
    manager.AddObject(IP6, "org.freedesktop.NetworkManager.IP6Config", {
        "AddressData": dbus.Array([{"address": "2001:db8:9::5", "prefix": dbus.UInt32(64)}], signature="a{sv}"),
        "Gateway": "fe80::9",
        "Nameservers": dbus.Array([dbus.ByteArray(bytes.fromhex("20010db8000900000000000000000053"))], signature="ay"),
        "NameserverData": dbus.Array([], signature="a{sv}")}, [])
    manager.object_manager_emit_added(IP6)


def add_access_points(manager):
    paths = []
    for name, (number, strength, flags, wpa, rsn) in ACCESS_POINTS.items():
        path = dbus.ObjectPath(f"/org/freedesktop/NetworkManager/AccessPoint/{number}")
        manager.AddObject(path, base.ACCESS_POINT_IFACE, {
            "Ssid": dbus.ByteArray(name.encode("latin-1")), "HwAddress": f"02:00:5E:10:00:{number:02X}",
            "Strength": dbus.Byte(strength), "Flags": dbus.UInt32(flags), "WpaFlags": dbus.UInt32(wpa),
            "RsnFlags": dbus.UInt32(rsn), "Mode": dbus.UInt32(2), "Frequency": dbus.UInt32(2412),
            "MaxBitrate": dbus.UInt32(54000), "LastSeen": dbus.Int32(1)}, [])
        manager.object_manager_emit_added(path)
        paths.append(path)
    change(DEVICE, base.WIRELESS_DEVICE_IFACE, {
        "AccessPoints": dbus.Array(paths, signature="o")})
