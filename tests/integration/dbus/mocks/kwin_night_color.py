'''KWin's Night Color, as far as we read it: Plasma 5 (/ColorCorrect) or Plasma 6
(/org/kde/KWin/NightLight).

Parameters: plasma (5 or 6), running, mode, daylight (Plasma 6), targetTemperature,
previous and scheduled (transition start times, Unix seconds), cookie (what inhibit returns).
'''

import dbus

BUS_NAME = 'org.kde.KWin'
MAIN_OBJ = '/org/kde/KWin'
MAIN_IFACE = 'org.kde.KWin'
SYSTEM_BUS = False


def load(mock, parameters):
    plasma6 = parameters.get('plasma', 6) == 6
    if plasma6:
        path, iface, number = '/org/kde/KWin/NightLight', 'org.kde.KWin.NightLight', dbus.UInt32
    else:
        path, iface, number = '/ColorCorrect', 'org.kde.kwin.ColorCorrect', dbus.Int32
    properties = {
        'running': parameters.get('running', True),
        'available': True,
        'targetTemperature': number(parameters.get('targetTemperature', 4500)),
        'mode': number(parameters.get('mode', 2)),
        'previousTransitionDateTime': dbus.UInt64(parameters.get('previous', 0)),
        'scheduledTransitionDateTime': dbus.UInt64(parameters.get('scheduled', 0)),
    }
    if plasma6:
        properties['daylight'] = parameters.get('daylight', False)
    mock.AddObject(path, iface, properties, [
        ('inhibit', '', 'u', f'ret = {parameters.get("cookie", 7)}'),
        ('uninhibit', 'u', '', ''),
    ])
