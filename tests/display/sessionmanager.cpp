// SPDX-License-Identifier: GPL-3.0-or-later
// A desktop's session manager as far as a program sees it (XSMP), for tests. Prints "listens
// ADDRESS", the value of SESSION_MANAGER for its programs. Reads commands, one a line:
//
//   end any|errors|none   the session ends; programs may ask their users anything, of errors,
//   nothing die                   every program is to end itself
//
// and prints what programs do: "registered", "interacts", "interacted stay|go" (stay: the session
// is not to end), "saved yes|no", "left".
#include <X11/ICE/ICElib.h>
#include <X11/ICE/ICEutil.h>
#include <X11/SM/SMlib.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <iostream>
#include <map>
#include <span>
#include <string>
#include <vector>

#include <poll.h>
#include <unistd.h>

namespace
{

std::vector<SmsConn> programs;
std::vector<IceConn> connections;
bool isEnding = false;

void say(const std::string &what)
{
    std::cout << what << std::endl;
}

void save(SmsConn program, int interaction)
{
    SmsSaveYourself(program, isEnding ? SmSaveBoth : SmSaveLocal, isEnding ? True : False,
                    interaction, False);
}

Status registerProgram(SmsConn program, SmPointer /*data*/, char *previous)
{
    if (previous) {
        std::free(previous);
        return 0;
    }
    char *id = SmsGenerateClientID(program);
    SmsRegisterClientReply(program, id);
    std::free(id);
    programs.push_back(program);
    save(program, SmInteractStyleNone);
    say("registered");
    return 1;
}

void interact(SmsConn program, SmPointer /*data*/, int /*dialog*/)
{
    say("interacts");
    SmsInteract(program);
}

void interacted(SmsConn program, SmPointer /*data*/, Bool cancels)
{
    say(cancels ? "interacted stay" : "interacted go");
    if (cancels) {
        isEnding = false;
        SmsShutdownCancelled(program);
    }
}

void requestSave(SmsConn program, SmPointer /*data*/, int /*type*/, Bool /*ends*/,
                 int /*interaction*/, Bool /*fast*/, Bool /*global*/)
{
    save(program, SmInteractStyleNone);
}

void secondPhase(SmsConn program, SmPointer /*data*/)
{
    SmsSaveYourselfPhase2(program);
}

void saved(SmsConn program, SmPointer /*data*/, Bool success)
{
    if (isEnding)
        say(success ? "saved yes" : "saved no");
    else
        SmsSaveComplete(program);
}

void left(SmsConn program, SmPointer /*data*/, int count, char **reasons)
{
    SmFreeReasons(count, reasons);
    std::erase(programs, program);
    IceConn connection = SmsGetIceConnection(program);
    SmsCleanUp(program);
    std::erase(connections, connection);
    IceSetShutdownNegotiation(connection, False);
    IceCloseConnection(connection);
    say("left");
}

void setProperties(SmsConn /*program*/, SmPointer /*data*/, int count, SmProp **properties)
{
    for (SmProp *property : std::span(properties, count))
        SmFreeProperty(property);
    std::free(static_cast<void *>(properties));
}

void deleteProperties(SmsConn /*program*/, SmPointer /*data*/, int count, char **names)
{
    for (char *name : std::span(names, count))
        std::free(name);
    std::free(static_cast<void *>(names));
}

void getProperties(SmsConn program, SmPointer /*data*/)
{
    SmsReturnProperties(program, 0, nullptr);
}

Status greet(SmsConn /*program*/, SmPointer /*data*/, unsigned long *mask, SmsCallbacks *callbacks,
             char ** /*failure*/)
{
    *mask = SmsRegisterClientProcMask | SmsInteractRequestProcMask | SmsInteractDoneProcMask
            | SmsSaveYourselfRequestProcMask | SmsSaveYourselfP2RequestProcMask
            | SmsSaveYourselfDoneProcMask | SmsCloseConnectionProcMask | SmsSetPropertiesProcMask
            | SmsDeletePropertiesProcMask | SmsGetPropertiesProcMask;
    callbacks->register_client.callback = registerProgram;
    callbacks->interact_request.callback = interact;
    callbacks->interact_done.callback = interacted;
    callbacks->save_yourself_request.callback = requestSave;
    callbacks->save_yourself_phase2_request.callback = secondPhase;
    callbacks->save_yourself_done.callback = saved;
    callbacks->close_connection.callback = left;
    callbacks->set_properties.callback = setProperties;
    callbacks->delete_properties.callback = deleteProperties;
    callbacks->get_properties.callback = getProperties;
    return 1;
}

Bool trustAnybody(char * /*host*/)
{
    return True;
}

// A connection that breaks ends a program of the usual kind.
void passOver(IceConn /*connection*/) {}

void accept(IceListenObj listener)
{
    IceAcceptStatus status = IceAcceptFailure;
    IceConn connection = IceAcceptConnection(listener, &status);
    if (!connection)
        return;
    while (IceConnectionStatus(connection) == IceConnectPending)
        IceProcessMessages(connection, nullptr, nullptr);
    if (IceConnectionStatus(connection) == IceConnectAccepted)
        connections.push_back(connection);
    else
        IceCloseConnection(connection);
}

void obey(const std::string &command)
{
    static const std::map<std::string, int> ends{{"end any", SmInteractStyleAny},
                                                 {"end errors", SmInteractStyleErrors},
                                                 {"end none", SmInteractStyleNone}};
    const auto end = ends.find(command);
    isEnding = isEnding || end != ends.end();
    for (SmsConn program : programs) {
        if (end != ends.end())
            save(program, end->second);
        else if (command == "die")
            SmsDie(program);
    }
}

// Serves whatever comes next. False at the end of the commands.
bool serve(std::span<IceListenObj> listeners)
{
    std::vector<pollfd> waiting{{STDIN_FILENO, POLLIN, 0}};
    for (IceListenObj listener : listeners)
        waiting.push_back({IceGetListenConnectionNumber(listener), POLLIN, 0});
    const std::vector<IceConn> served = connections;
    for (IceConn connection : served)
        waiting.push_back({IceConnectionNumber(connection), POLLIN, 0});
    if (poll(waiting.data(), waiting.size(), -1) < 0)
        return false;
    for (std::size_t i = 0; i < listeners.size(); ++i) {
        if (waiting[1 + i].revents != 0)
            accept(listeners[i]);
    }
    for (std::size_t i = 0; i < served.size(); ++i) {
        if (waiting[1 + listeners.size() + i].revents == 0)
            continue;
        if (IceProcessMessages(served[i], nullptr, nullptr) == IceProcessMessagesIOError)
            std::erase(connections, served[i]);
    }
    if (waiting[0].revents == 0)
        return true;
    // Byte by byte: what a stream has read ahead would not be waited for.
    std::string command;
    char byte = 0;
    while (read(STDIN_FILENO, &byte, 1) == 1 && byte != '\n')
        command += byte;
    obey(command);
    return byte == '\n';
}

} // namespace

int main()
{
    std::array<char, 256> error{};
    std::array<char, 5> vendor{"test"};
    std::array<char, 4> release{"1.0"};
    int count = 0;
    IceListenObj *listeners = nullptr;
    IceSetIOErrorHandler(passOver);
    if (!SmsInitialize(vendor.data(), release.data(), greet, nullptr, trustAnybody, error.size(),
                       error.data())
        || !IceListenForConnections(&count, &listeners, error.size(), error.data())) {
        std::cerr << error.data() << '\n';
        return 1;
    }
    const std::span all(listeners, count);
    for (IceListenObj listener : all)
        IceSetHostBasedAuthProc(listener, trustAnybody);
    char *address = IceComposeNetworkIdList(count, listeners);
    say(std::string("listens ") + address);
    std::free(address);
    while (serve(all)) {
    }
    IceFreeListenObjs(count, listeners);
    return 0;
}
