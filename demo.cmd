@echo off
rem Builds pxk and shows what it does to a picture: demo [picture]
rem The tools come from MSYS2, which installs what is missing; the page opens in the browser at the end.
setlocal enableextensions

if "%~1"=="/?" goto usage
if /i "%~1"=="--help" goto usage
if /i "%~1"=="-h" goto usage
set "picture="
if not "%~1"=="" (
    if not exist "%~f1" (
        echo %~1 is not there. Run next: demo, or demo with the path of another picture 1>&2
        exit /b 2
    )
    set "picture=%~f1"
)
cd /d "%~dp0"

if not defined MSYS2 set "MSYS2=%SystemDrive%\msys64"
if exist "%MSYS2%\usr\bin\pacman.exe" set "PATH=%MSYS2%\ucrt64\bin;%MSYS2%\usr\bin;%PATH%"
set "missing="
for %%t in (g++ cmake ninja) do (
    where %%t >nul 2>nul || set "missing=yes"
)
if exist "%MSYS2%\usr\bin\pacman.exe" if not exist "%MSYS2%\ucrt64\include\png.h" set "missing=yes"
if not defined missing goto build
if not exist "%MSYS2%\usr\bin\pacman.exe" goto nothing
echo Installing compiler, CMake, Ninja, libpng and libjpeg-turbo in %MSYS2%
set "name=mingw-w64-ucrt-x86_64"
pacman -S --needed --noconfirm %name%-gcc %name%-cmake %name%-ninja %name%-libpng %name%-libjpeg-turbo
if errorlevel 1 exit /b 1

:build
echo Building (build\release)
cmake --preset release -DPXK_BUILD_TESTS=OFF
if errorlevel 1 goto failed
cmake --build --preset release --target gallery
if errorlevel 1 goto failed
echo Making the page
if defined picture build\release\bin\gallery -o build\gallery "%picture%"
if not defined picture build\release\bin\gallery -o build\gallery
if errorlevel 1 exit /b 1
start "" build\gallery\index.html
exit /b 0

:nothing
echo A compiler, CMake and Ninja are needed. Run next: winget install MSYS2.MSYS2, then demo again. 1>&2
echo MSYS2 in another folder than %MSYS2%? Run next: set MSYS2=folder, then demo again. 1>&2
exit /b 1

:failed
echo The build failed. Run next: cmake --build --preset release --target gallery 1>&2
exit /b 1

:usage
echo usage: demo [picture]
echo Builds pxk and shows its operations on a BMP, PNG or JPEG file (default: a photograph that comes with it).
exit /b 0
