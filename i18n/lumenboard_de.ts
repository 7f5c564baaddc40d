<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE" sourcelanguage="en">
<context>
    <name>AttendanceQueue</name>
    <message>
        <source>Attendance</source>
        <translation>Anwesenheit</translation>
    </message>
    <message>
        <source>Logging attendance...</source>
        <translation>Anwesenheit wird erfasst …</translation>
    </message>
    <message>
        <source>A temporary error occurred. However, the logging of your attendance has been successfully queued for later execution.</source>
        <translation>Es ist ein vorübergehender Fehler aufgetreten. Ihre Anwesenheit wurde jedoch gespeichert und wird später übermittelt.</translation>
    </message>
    <message>
        <source>Failed to log your attendance. Please call on a staff member in charge and ask for instructions.</source>
        <translation>Ihre Anwesenheit konnte nicht erfasst werden. Bitte wenden Sie sich an eine zuständige Person und fragen Sie, was zu tun ist.</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Fehler</translation>
    </message>
    <message>
        <source>Too many cards at once.</source>
        <translation>Zu viele Transponder auf einmal.</translation>
    </message>
    <message>
        <source>Failed to remove an attendance log request from the queue. Attendance logging has been stopped.</source>
        <translation>Ein Anwesenheitseintrag konnte nicht aus der Warteschlange entfernt werden. Die Erfassung der Anwesenheit wurde angehalten.</translation>
    </message>
</context>
<context>
    <name>AttendanceResponse</name>
    <message>
        <source>Invalid server response (1).</source>
        <translation>Die Antwort des Dienstes ist unlesbar (1).</translation>
    </message>
    <message>
        <source>Invalid server response (2).</source>
        <translation>Die Antwort des Dienstes ist unlesbar (2).</translation>
    </message>
    <message>
        <source>Invalid server response (3).</source>
        <translation>Die Antwort des Dienstes ist unlesbar (3).</translation>
    </message>
</context>
<context>
    <name>AttendanceWorker</name>
    <message>
        <source>Serial port error</source>
        <translation>Fehler am Lesegerät</translation>
    </message>
    <message>
        <source>Failed to parse transponder ID. :O</source>
        <translation>Die Nummer des Transponders ist unlesbar.</translation>
    </message>
    <message>
        <source>No serial port found.</source>
        <translation>Kein Lesegerät gefunden.</translation>
    </message>
    <message>
        <source>The card reader has been disconnected.</source>
        <translation>Das Lesegerät wurde getrennt.</translation>
    </message>
    <message>
        <source>Another program uses the card reader, or access is denied.</source>
        <translation>Ein anderes Programm benutzt das Lesegerät, oder der Zugriff wird verweigert.</translation>
    </message>
    <message>
        <source>The card reader is out of order.</source>
        <translation>Das Lesegerät ist gestört.</translation>
    </message>
    <message>
        <source>%1
Retrying in %2 seconds.</source>
        <translation>%1
Neuer Versuch in %2 s.</translation>
    </message>
</context>
<context>
    <name>CardReadiness</name>
    <message>
        <source>No card reader connected: cards are not read.</source>
        <extracomment>Small line at the bottom of the screen</extracomment>
        <translation>Kein Lesegerät verbunden: Transponder werden nicht gelesen.</translation>
    </message>
    <message>
        <source>Cards are no longer logged. Please call on a staff member in charge.</source>
        <extracomment>Small line at the bottom of the screen, after a fatal error</extracomment>
        <translation>Transponder werden nicht mehr erfasst. Bitte wenden Sie sich an eine zuständige Person.</translation>
    </message>
    <message>
        <source>Lumenboard already runs on this device. Cards are read here once the other program ends.</source>
        <extracomment>Small line at the bottom of the screen of a second program</extracomment>
        <translation>Lumenboard läuft auf diesem Gerät bereits. Transponder werden hier erst gelesen, wenn das andere Programm endet.</translation>
    </message>
    <message>
        <source>Cards cannot be logged: the storage of this device cannot be written to. Please call on a staff member in charge.</source>
        <extracomment>Small line at the bottom of the screen</extracomment>
        <translation>Transponder werden nicht erfasst: Der Speicher dieses Geräts kann nicht beschrieben werden. Bitte wenden Sie sich an eine zuständige Person.</translation>
    </message>
</context>
<context>
    <name>Config</name>
    <message>
        <source>Unknown location</source>
        <translation>Unbekannter Ort</translation>
    </message>
</context>
<context>
    <name>Event</name>
    <message>
        <source>%1 - %2</source>
        <extracomment>Two times. No-break spaces and a word joiner (U+2060) behind the dash keep them on one line.</extracomment>
        <translation>%1&#xa0;-⁠&#xa0;%2&#xa0;Uhr</translation>
    </message>
</context>
<context>
    <name>EventData</name>
    <message>
        <source>this doesn&apos;t look like event data</source>
        <translation>Der Dienst liefert keinen Veranstaltungsplan.</translation>
    </message>
    <message>
        <source>The schedule could not be fetched.</source>
        <translation>Der Veranstaltungsplan ist nicht verfügbar.</translation>
    </message>
    <message>
        <source>The schedule is damaged and therefore incomplete.</source>
        <translation>Der Veranstaltungsplan ist fehlerhaft und deshalb unvollständig.</translation>
    </message>
</context>
<context>
    <name>EventDetail</name>
    <message>
        <source>Mandatory for: %1</source>
        <extracomment>%1 is a list of audience groups</extracomment>
        <translation>Pflicht für %1</translation>
    </message>
    <message>
        <source>Optional for: %1</source>
        <extracomment>%1 is a list of audience groups</extracomment>
        <translation>Offen für %1</translation>
    </message>
</context>
<context>
    <name>EventList</name>
    <message>
        <source>Events</source>
        <translation>Veranstaltungen</translation>
    </message>
</context>
<context>
    <name>EventSummary</name>
    <message>
        <source>Mandatory for: %1</source>
        <extracomment>%1 is a list of audience groups</extracomment>
        <translation>Pflicht für %1</translation>
    </message>
    <message>
        <source>Optional for: %1</source>
        <extracomment>%1 is a list of audience groups</extracomment>
        <translation>Offen für %1</translation>
    </message>
</context>
<context>
    <name>Failure</name>
    <message>
        <source>Unknown error</source>
        <translation>Unbekannter Fehler</translation>
    </message>
</context>
<context>
    <name>LectureRoom</name>
    <message>
        <source>Now</source>
        <translation>Jetzt</translation>
    </message>
    <message>
        <source>Nothing is on right now.</source>
        <translation>Im Augenblick keine Veranstaltung.</translation>
    </message>
    <message>
        <source>Next</source>
        <translation>Nächste Veranstaltung</translation>
    </message>
    <message>
        <source>No upcoming events.</source>
        <translation>In nächster Zeit keine Veranstaltungen.</translation>
    </message>
</context>
<context>
    <name>Main</name>
    <message>
        <source>Menu</source>
        <translation>Menü</translation>
    </message>
    <message>
        <source>Lumenboard</source>
        <translation>Lumenboard</translation>
    </message>
</context>
<context>
    <name>MainDrawer</name>
    <message>
        <source>Register transponder</source>
        <translation>Transponder registrieren</translation>
    </message>
    <message>
        <source>Menu</source>
        <translation>Menü</translation>
    </message>
</context>
<context>
    <name>NotificationControls</name>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Confirm</source>
        <translation>Bestätigen</translation>
    </message>
    <message>
        <source>Stop the countdown</source>
        <translation>Countdown anhalten</translation>
    </message>
    <message>
        <source>Countdown</source>
        <translation>Countdown</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
</context>
<context>
    <name>Notifications</name>
    <message>
        <source>Notices</source>
        <translation>Meldungen</translation>
    </message>
    <message>
        <source>Scroll the notices</source>
        <translation>In den Meldungen blättern</translation>
    </message>
</context>
<context>
    <name>Reason</name>
    <message>
        <source>The response of the service is incomplete.</source>
        <translation>Die Antwort des Dienstes ist unvollständig.</translation>
    </message>
    <message>
        <source>The service does not answer.</source>
        <translation>Der Dienst antwortet nicht.</translation>
    </message>
    <message>
        <source>The service accepts no connection.</source>
        <translation>Der Dienst nimmt keine Verbindung an.</translation>
    </message>
    <message>
        <source>The connection to the service is not secure. Are its certificate and the clock right?</source>
        <translation>Die Verbindung zum Dienst ist nicht sicher. Stimmen sein Zertifikat und die Uhrzeit?</translation>
    </message>
    <message>
        <source>The address of the service is set wrongly.</source>
        <translation>Die Adresse des Dienstes ist falsch eingestellt.</translation>
    </message>
    <message>
        <source>The service cannot be found. Is this device connected to the network?</source>
        <translation>Der Dienst ist nicht zu finden. Ist dieses Gerät mit dem Netz verbunden?</translation>
    </message>
    <message>
        <source>The service cannot be reached.</source>
        <translation>Der Dienst ist nicht erreichbar.</translation>
    </message>
    <message>
        <source>The service does not admit this device (error %1).</source>
        <translation>Der Dienst lässt dieses Gerät nicht zu (Fehler %1).</translation>
    </message>
    <message>
        <source>The service does not find what it was asked for (error %1).</source>
        <translation>Der Dienst findet das Gesuchte nicht (Fehler %1).</translation>
    </message>
    <message>
        <source>The service gives an unreadable response.</source>
        <translation>Die Antwort des Dienstes ist unlesbar.</translation>
    </message>
    <message>
        <source>The service refers to another address (error %1).</source>
        <translation>Der Dienst verweist auf eine andere Adresse (Fehler %1).</translation>
    </message>
    <message>
        <source>The service refuses the request (error %1).</source>
        <translation>Der Dienst lehnt die Anfrage ab (Fehler %1).</translation>
    </message>
    <message>
        <source>The service is out of order (error %1).</source>
        <translation>Der Dienst ist gestört (Fehler %1).</translation>
    </message>
    <message>
        <source>The storage of this device is full.</source>
        <translation>Der Speicher dieses Geräts ist voll.</translation>
    </message>
    <message>
        <source>The storage of this device cannot be written to.</source>
        <translation>Auf den Speicher dieses Geräts kann nicht geschrieben werden.</translation>
    </message>
    <message>
        <source>The service has broken off the connection.</source>
        <translation>Der Dienst hat die Verbindung abgebrochen.</translation>
    </message>
</context>
<context>
    <name>RecordQueue</name>
    <message>
        <source>FATAL ERROR</source>
        <translation>SCHWERER FEHLER</translation>
    </message>
</context>
<context>
    <name>RegistrationFlow</name>
    <message>
        <source>The card is registered.</source>
        <translation>Die Karte ist registriert.</translation>
    </message>
    <message>
        <source>The log-in failed. Are user name and password right?</source>
        <translation>Die Anmeldung ist fehlgeschlagen. Stimmen Benutzername und Passwort?</translation>
    </message>
    <message>
        <source>The service refuses to register this card. Please call on a staff member in charge.</source>
        <translation>Der Dienst lehnt es ab, diese Karte zu registrieren. Bitte wenden Sie sich an die zuständigen Mitarbeiter.</translation>
    </message>
</context>
<context>
    <name>RegistrationLogin</name>
    <message>
        <source>Login</source>
        <translation>Anmeldung</translation>
    </message>
    <message>
        <source>Username</source>
        <translation>Benutzername</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>Passwort</translation>
    </message>
    <message>
        <source>Please login with your DeskHub account.</source>
        <translation>Bitte melden Sie sich mit Ihrem DeskHub-Konto an.</translation>
    </message>
    <message>
        <source>Register</source>
        <translation>Registrieren</translation>
    </message>
    <message>
        <source>Alternatively, you can push the button below to scan a QR code and login online.</source>
        <translation>Sie können sich auch mit Ihrem Telefon anmelden: Tippen Sie auf die Taste und scannen Sie den QR-Code.</translation>
    </message>
    <message>
        <source>Log in with a QR code</source>
        <translation>Mit QR-Code anmelden</translation>
    </message>
</context>
<context>
    <name>RegistrationQrCode</name>
    <message>
        <source>Please scan the QR code and visit the contained web address.</source>
        <translation>Bitte scannen Sie den QR-Code und rufen Sie die enthaltene Webadresse auf.</translation>
    </message>
    <message>
        <source>Alternatively, you can push the button below to login using an on-screen keyboard.</source>
        <translation>Sie können sich auch hier anmelden: Tippen Sie auf die Taste mit der Tastatur.</translation>
    </message>
    <message>
        <source>Try again</source>
        <translation>Erneut versuchen</translation>
    </message>
    <message>
        <source>The QR code cannot be shown.</source>
        <translation>Der QR-Code kann nicht angezeigt werden.</translation>
    </message>
    <message>
        <source>QR code</source>
        <translation>QR-Code</translation>
    </message>
    <message>
        <source>Log in on the on-screen keyboard</source>
        <translation>Über die Bildschirmtastatur anmelden</translation>
    </message>
</context>
<context>
    <name>RoomReadiness</name>
    <message>
        <source>This screen has not been given a room.</source>
        <extracomment>Small line at the bottom of the screen</extracomment>
        <translation>Diesem Gerät ist kein Raum zugeordnet.</translation>
    </message>
    <message>
        <source>This screen has not been given a room, as its name or its secret is missing.</source>
        <translation>Diesem Gerät ist kein Raum zugeordnet: Sein Name oder sein Geheimnis für die Anmeldung fehlt.</translation>
    </message>
</context>
<context>
    <name>ScheduleAge</name>
    <message>
        <source>As of %1</source>
        <extracomment>Small line below a schedule that could not be refreshed; %1 is a time such as 10:05</extracomment>
        <translation>Stand %1 Uhr</translation>
    </message>
    <message>
        <source>As of %1, %2</source>
        <extracomment>The same for a schedule of an earlier day; %1 is a date, %2 a time</extracomment>
        <translation>Stand %1, %2 Uhr</translation>
    </message>
</context>
<context>
    <name>TallyxFlow</name>
    <message>
        <source>Failed to query your presence status. Please select &quot;enter&quot; or &quot;leave&quot; below.</source>
        <translation>Ihr Präsenzstatus konnte nicht abgefragt werden. Bitte wählen Sie unten „Kommen“ oder „Gehen“.</translation>
    </message>
    <message>
        <source>A temporary error occurred. However, the logging of your presence has been successfully queued for later execution.</source>
        <translation>Es ist ein vorübergehender Fehler aufgetreten. Ihre Buchung wurde jedoch gespeichert und wird später übermittelt.</translation>
    </message>
    <message>
        <source>Failed to log your presence. Please call on a staff member in charge and ask for instructions.</source>
        <translation>Ihre Präsenz konnte nicht gebucht werden. Bitte wenden Sie sich an eine zuständige Person und fragen Sie, was zu tun ist.</translation>
    </message>
</context>
<context>
    <name>TallyxNotice</name>
    <message>
        <source>Presence</source>
        <translation>Präsenz</translation>
    </message>
    <message>
        <source>Querying status...</source>
        <translation>Status wird abgefragt …</translation>
    </message>
    <message>
        <source>Please select below.</source>
        <translation>Bitte wählen Sie unten.</translation>
    </message>
    <message>
        <source>Arrive</source>
        <translation>Kommen</translation>
    </message>
    <message>
        <source>Leave</source>
        <translation>Gehen</translation>
    </message>
    <message>
        <source>Your presence has been logged.</source>
        <translation>Ihre Präsenz wurde gebucht.</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Fehler</translation>
    </message>
</context>
<context>
    <name>TallyxQueue</name>
    <message>
        <source>Presence</source>
        <translation>Präsenz</translation>
    </message>
    <message>
        <source>Too many cards at once.</source>
        <translation>Zu viele Transponder auf einmal.</translation>
    </message>
    <message>
        <source>Failed to remove a log request from the queue. Logging has been stopped.</source>
        <translation>Eine Buchung konnte nicht aus der Warteschlange entfernt werden. Die Erfassung wurde angehalten.</translation>
    </message>
</context>
<context>
    <name>TransponderRegistration</name>
    <message>
        <source>Register transponder</source>
        <translation>Transponder registrieren</translation>
    </message>
    <message>
        <source>This transponder has already been assigned.</source>
        <translation>Dieser Transponder ist bereits zugeordnet.</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Fehler</translation>
    </message>
    <message>
        <source>The request failed.</source>
        <translation>Die Anfrage ist fehlgeschlagen.</translation>
    </message>
    <message>
        <source>Try again</source>
        <translation>Erneut versuchen</translation>
    </message>
    <message>
        <source>Please scan your transponder.</source>
        <translation>Bitte halten Sie Ihren Transponder an das Lesegerät.</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Please wait.</source>
        <translation>Bitte warten.</translation>
    </message>
</context>
<context>
    <name>ViewHeader</name>
    <message>
        <source>Back</source>
        <translation>Zurück</translation>
    </message>
</context>
<context>
    <name>tallyxservice</name>
    <message>
        <source>Authentication unavailable.</source>
        <translation>Dieses Gerät ist beim Dienst nicht angemeldet.</translation>
    </message>
    <message>
        <source>The service has not confirmed the booking.</source>
        <translation>Der Dienst hat die Buchung nicht bestätigt.</translation>
    </message>
</context>
</TS>
