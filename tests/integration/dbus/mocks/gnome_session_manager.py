'''GNOME's session manager of an active session with the "inhibitors" given: each
{"flags": u, "app_id": s}; it also owns the bus names in "also_own".'''

import dbus

BUS_NAME = 'org.gnome.SessionManager'
MAIN_OBJ = '/org/gnome/SessionManager'
MAIN_IFACE = 'org.gnome.SessionManager'
SYSTEM_BUS = False


def load(mock, parameters):
    paths = []
    for number, inhibitor in enumerate(parameters.get('inhibitors', [])):
        path = f'/org/gnome/SessionManager/Inhibitor{number}'
        mock.AddObject(path, 'org.gnome.SessionManager.Inhibitor', {}, [
            ('GetFlags', '', 'u', f'ret = {inhibitor["flags"]}'),
            ('GetAppId', '', 's', f'ret = {inhibitor["app_id"]!r}'),
        ])
        paths.append(path)
    mock.AddMethods(MAIN_IFACE, [('GetInhibitors', '', 'ao', f'ret = {paths!r}')])
    mock.AddProperties(MAIN_IFACE, {'SessionIsActive': True, 'InhibitedActions': dbus.UInt32(0)})
    for name in parameters.get('also_own', []):
        mock.connection.request_name(name)
