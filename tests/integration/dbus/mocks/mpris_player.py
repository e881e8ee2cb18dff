'''An MPRIS player with a fixed "status"; it also owns the bus names in "also_own".'''

import dbus

BUS_NAME = 'org.mpris.MediaPlayer2.marzipeltest'
MAIN_OBJ = '/org/mpris/MediaPlayer2'
MAIN_IFACE = 'org.mpris.MediaPlayer2.Player'
SYSTEM_BUS = False


def load(mock, parameters):
    mock.AddProperties(MAIN_IFACE, dbus.Dictionary({
        'PlaybackStatus': parameters.get('status', 'Playing'),
    }, signature='sv'))
    for name in parameters.get('also_own', []):
        mock.connection.request_name(name)
