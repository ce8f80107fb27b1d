"""python3-dbusmock's NetworkManager, with a radio whose access points answer as their names say."""
import uuid

import dbus
import dbusmock
from dbusmock.templates.networkmanager import *  # noqa: F401,F403 - its methods become this template's
from dbusmock.templates import networkmanager as base
from gi.repository import GLib

BUS_NAME, MAIN_OBJ, SYSTEM_BUS, IS_OBJECT_MANAGER = base.BUS_NAME, base.MAIN_OBJ, base.SYSTEM_BUS, True
DEVICE = "/org/freedesktop/NetworkManager/Devices/radio"
POINTS = "/org/freedesktop/NetworkManager/AccessPoint/"
TEST_IFACE = "org.freedesktop.DBus.Mock"
INTERFACE = "tv-wlan"
IP6 = "/org/freedesktop/NetworkManager/IP6Config/1"
SECURITY = "802-11-wireless-security"
AUTOMATIC = dbus.Array([{"address": "2001:db8:9::5", "prefix": dbus.UInt32(64)}], signature="a{sv}")
IP6_IFACE = "org.freedesktop.NetworkManager.IP6Config"
PASSPHRASE = "correct horse"
NO_SECRETS, DHCP_FAILED, USER_REQUESTED, SSID_NOT_FOUND = 7, 17, 39, 53
PSK, ENTERPRISE, SAE = 0x100, 0x200, 0x400
IN_MEMORY = 2
# name: strength, flags, WPA flags, RSN flags; the BSSID counts them
ACCESS_POINTS = {
    "home": (80, 1, 0, PSK), "open": (61, 0, 0, 0), "old": (20, 1, 0, 0), "wpa": (30, 1, PSK, 0), "new": (100, 1, 0, SAE),
    "both": (40, 1, 0, PSK | SAE), "office": (50, 1, 0, ENTERPRISE), "\xff\x01raw": (0, 0, 0, 0),
    "no-dhcp": (50, 0, 0, 0), "leaving": (50, 0, 0, 0), "left": (50, 0, 0, 0), "offline": (50, 0, 0, 0), "near": (50, 0, 0, 0),
    "silent": (50, 1, 0, PSK), "slow-dhcp": (50, 0, 0, 0),
    "known": (50, 1, 0, PSK), "moved": (50, 1, 0, PSK), "guarded": (50, 1, 0, PSK), "fixed": (50, 1, 0, PSK),
}
ENDINGS = {"no-dhcp": DHCP_FAILED, "leaving": SSID_NOT_FOUND}
# These never end. Their access point tells by its strength that the client, which reads the new profile last, knows all
# about them.
UNENDING = {"silent": base.DeviceState.CONFIG, "slow-dhcp": base.DeviceState.IP_CONFIG}
# name: passphrase, settings of the connection
PROFILES = {
    "known": (PASSPHRASE, {}), "moved": ("former horse", {}), "fixed": (PASSPHRASE, {"read-only": True}),
    "guarded": (PASSPHRASE, {"permissions": dbus.Array(["user:tv:"], signature="s")}),
}
PERMISSIONS = {"org.freedesktop.NetworkManager.settings.modify.system": "yes",
               "org.freedesktop.NetworkManager.settings.modify.own": "no"}


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


def name_of(point):
    return bytes(dbusmock.get_object(point).Get(base.ACCESS_POINT_IFACE, "Ssid")).decode("latin-1")


def tell_strength(point, percent):
    change(point, base.ACCESS_POINT_IFACE, {"Strength": dbus.Byte(percent)})
    return False


def runs(active):
    return active in dbusmock.get_object(base.MANAGER_OBJ).Get(base.MANAGER_IFACE, "ActiveConnections")


def end(active, reason):
    if not runs(active):
        return False
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
    if not runs(active):
        return False
    running = dbusmock.get_object(active)
    point = running.Get(base.ACTIVE_CONNECTION_IFACE, "SpecificObject")
    show_addresses(running.settings)
    # The loopback interface is there on every machine, and its gateway answers.
    change(DEVICE, base.DEVICE_IFACE, {
        "Ip6Connectivity": dbus.UInt32(3 if name_of(point) == "offline" else 4),
        "IpInterface": "lo" if name_of(point) == "near" else INTERFACE})
    set_device(base.DeviceState.ACTIVATED, 0, active)
    change(active, base.ACTIVE_CONNECTION_IFACE, {
        "State": dbus.UInt32(2), "Ip6Config": dbus.ObjectPath(IP6)})
    return False


def activate(manager, connection, _device, point):
    name = name_of(point)
    settings = dbusmock.get_object(connection).settings
    remove_ended()
    manager.attempts += 1
    active = manager.AddActiveConnection([], connection, point, f"attempt{manager.attempts}", 1)
    running = dbusmock.get_object(active)
    running.settings = settings
    running.AddProperties(base.ACTIVE_CONNECTION_IFACE, {"Ip6Config": dbus.ObjectPath("/")})
    change(active, base.ACTIVE_CONNECTION_IFACE, {"Devices": dbus.Array([dbus.ObjectPath(DEVICE)], signature="o")})
    set_device(UNENDING.get(name, base.DeviceState.CONFIG), 0, active)
    if settings.get(SECURITY, {}).get("psk", PASSPHRASE) != PASSPHRASE:
        GLib.idle_add(end, active, NO_SECRETS)
    elif name in ENDINGS:
        GLib.idle_add(end, active, ENDINGS[name])
    elif name in UNENDING:
        dbusmock.get_object(connection).point = point
    else:
        GLib.idle_add(succeed, active)
    return dbus.ObjectPath(active)


def add_and_activate(manager, settings, device, point):
    if name_of(point) == "left":
        raise dbus.exceptions.DBusException("no such thing", name=base.DEVICE_IFACE + ".SpecificObjectNotFound")
    settings = copy_of(settings)
    ssid = dbusmock.get_object(point).Get(base.ACCESS_POINT_IFACE, "Ssid")
    settings.setdefault("802-11-wireless", {})["ssid"] = ssid
    settings.setdefault("connection", {}).update({"type": "802-11-wireless", "id": "new"})
    connection = add_profile(settings)
    return (dbus.ObjectPath(connection), activate(manager, connection, device, point))


def copy_of(settings):
    return {name: dict(values) for name, values in settings.items()}


def add_profile(settings):
    path = dbusmock.get_object(base.SETTINGS_OBJ).SettingsAddConnection(settings)
    profile = dbusmock.get_object(path)
    profile.disk, profile.point = copy_of(settings), None
    profile.ConnectionDelete, profile.update2 = delete, update2
    profile.ConnectionGetSettings, profile.ConnectionGetSecrets = without_secrets, secrets
    profile.AddMethod(base.CSETTINGS_IFACE, "Update2", "a{sa{sv}}ua{sv}", "a{sv}",
                      "self.update2(self, args[0], args[1]); ret = dbus.Dictionary({}, signature='sv')")
    return path


def without_secrets(profile):
    shown = copy_of(profile.settings)
    shown.get(SECURITY, {}).pop("psk", None)
    if profile.point is not None:
        GLib.idle_add(tell_strength, profile.point, 2)
    return shown


def secrets(profile, setting):
    psk = profile.settings.get(setting, {}).get("psk")
    return {setting: dbus.Dictionary({} if psk is None else {"psk": psk}, signature="sv")}


def update2(profile, settings, flags):
    """Settings without secrets leave those that are there; no settings at all only move the profile to the disk."""
    if profile.settings["connection"].get("permissions"):
        raise dbus.exceptions.DBusException("not authorized", name=base.SETTINGS_IFACE + ".PermissionDenied")
    if settings:
        old = profile.settings
        profile.settings = copy_of(settings)
        if "psk" in old.get(SECURITY, {}):
            profile.settings[SECURITY].setdefault("psk", old[SECURITY]["psk"])
    if flags != IN_MEMORY:
        profile.disk = copy_of(profile.settings)
    profile.EmitSignal(base.CSETTINGS_IFACE, "Updated", "", [])


def forget_memory(_manager):
    """What a restart would do to the profiles."""
    for path in dbusmock.get_object(base.SETTINGS_OBJ).ListConnections():
        profile = dbusmock.get_object(path)
        profile.settings = copy_of(profile.disk)
        profile.EmitSignal(base.CSETTINGS_IFACE, "Updated", "", [])


def reset(manager):
    """As it began, for a client that comes next."""
    settings = dbusmock.get_object(base.SETTINGS_OBJ)
    running = manager.Get(base.MANAGER_IFACE, "ActiveConnections")
    for path in [*running, *manager.ended, *settings.ListConnections()]:
        manager.object_manager_emit_removed(path)
        manager.RemoveObject(path)
    manager.ended = []
    change(base.MANAGER_OBJ, base.MANAGER_IFACE, {"ActiveConnections": dbus.Array([], signature="o")})
    change(base.SETTINGS_OBJ, base.SETTINGS_IFACE, {"Connections": dbus.Array([], signature="o")})
    set_device(base.DeviceState.DISCONNECTED, 0, None)
    for number, (strength, *_rest) in enumerate(ACCESS_POINTS.values(), 1):
        tell_strength(POINTS + str(number), strength)
    for name, (passphrase, connection) in PROFILES.items():
        add_profile({
            "connection": {"type": "802-11-wireless", "id": name, "uuid": str(uuid.uuid4()), **connection},
            "802-11-wireless": {"ssid": dbus.ByteArray(name.encode())},
            SECURITY: {"key-mgmt": "wpa-psk", "psk": passphrase}})


def show_addresses(settings):
    manual = settings.get("ipv6", {})
    manual = manual if manual.get("method") == "manual" else None
    change(IP6, IP6_IFACE, {
        "AddressData": manual["address-data"] if manual else AUTOMATIC, "Gateway": manual.get("gateway", "") if manual else "::1"})


def reapply(device):
    active = dbusmock.get_object(device.Get(base.DEVICE_IFACE, "ActiveConnection"))
    show_addresses(dbusmock.get_object(active.Get(base.ACTIVE_CONNECTION_IFACE, "Connection")).settings)


def load(mock, parameters):
    base.load(mock, {**parameters, "Version": "1.42.4", "Connectivity": dbus.UInt32(4)})
    manager = dbusmock.get_object(base.MANAGER_OBJ)
    manager.attempts, manager.ended = 0, []
    manager.activate_connection, manager.add_and_activate_connection = activate, add_and_activate
    manager.deactivate_connection, manager.forget_memory, manager.reset = deactivate, forget_memory, reset
    manager.AddProperties(base.MANAGER_IFACE, {"ConnectivityCheckAvailable": True, "ConnectivityCheckEnabled": True})
    manager.AddMethod(base.MANAGER_IFACE, "GetPermissions", "", "a{ss}", f"ret = {PERMISSIONS}")
    manager.AddMethod(TEST_IFACE, "ForgetMemory", "", "", "self.forget_memory(self)")
    manager.AddMethod(TEST_IFACE, "Reset", "", "", "self.reset(self)")
    add_addresses(manager)
    add_radio(manager)
    add_access_points(manager)


def add_radio(manager):
    manager.AddWiFiDevice("radio", INTERFACE, base.DeviceState.DISCONNECTED)
    device = dbusmock.get_object(DEVICE)
    device.reapply = reapply
    device.AddProperties(base.WIRELESS_DEVICE_IFACE, {"ActiveAccessPoint": dbus.ObjectPath("/"), "LastScan": dbus.Int64(0)})
    device.AddProperties(base.DEVICE_IFACE, {
        "Ip6Config": dbus.ObjectPath("/"), "Ip4Connectivity": dbus.UInt32(4), "Ip6Connectivity": dbus.UInt32(4)})
    device.AddMethod(base.DEVICE_IFACE, "Reapply", "a{sa{sv}}tu", "", "self.reapply(self)")
    scan = ("self.UpdateProperties('%s', {'LastScan': dbus.Int64(5)})" % base.WIRELESS_DEVICE_IFACE)
    device.AddMethod(base.WIRELESS_DEVICE_IFACE, "RequestScan", "a{sv}", "", scan)


def add_addresses(manager):
    manager.AddObject(IP6, IP6_IFACE, {
        "AddressData": AUTOMATIC, "Gateway": "::1",
        "Nameservers": dbus.Array([dbus.ByteArray(bytes.fromhex("20010db8000900000000000000000053"))], signature="ay"),
        "NameserverData": dbus.Array([], signature="a{sv}")}, [])
    manager.object_manager_emit_added(IP6)


def add_access_points(manager):
    paths = []
    for number, (name, (strength, flags, wpa, rsn)) in enumerate(ACCESS_POINTS.items(), 1):
        path = dbus.ObjectPath(POINTS + str(number))
        manager.AddObject(path, base.ACCESS_POINT_IFACE, {
            "Ssid": dbus.ByteArray(name.encode("latin-1")), "HwAddress": f"02:00:5E:10:00:{number:02X}",
            "Strength": dbus.Byte(strength), "Flags": dbus.UInt32(flags), "WpaFlags": dbus.UInt32(wpa),
            "RsnFlags": dbus.UInt32(rsn), "Mode": dbus.UInt32(2), "Frequency": dbus.UInt32(2412),
            "MaxBitrate": dbus.UInt32(54000), "LastSeen": dbus.Int32(1)}, [])
        manager.object_manager_emit_added(path)
        paths.append(path)
    change(DEVICE, base.WIRELESS_DEVICE_IFACE, {
        "AccessPoints": dbus.Array(paths, signature="o")})
