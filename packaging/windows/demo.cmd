@echo off
rem From nothing to a stored page: a device, a shop, a page, a good and a purchase, all in the folder "demo".
rem Usage: demo.cmd [PORT [no-browser]]
setlocal
cd /d "%~dp0"
set client=x64\pavonix.exe
set shop=x64\pavonix-shop.exe
set port=8080
if not "%~1"=="" set port=%~1
set url=http://127.0.0.1:%port%
set call=--profile demo\device.profile
if not exist demo mkdir demo

echo 1. A device gets its keys and its profile; the shop registers its public key.
if exist demo\device.profile goto registered
%client% profile new --out demo\device.profile --public-key demo\device.public.xml --serial DEMO-0001 --user-id 42
if errorlevel 1 goto failed
:registered
%shop% --db demo\shop.db device add --serial DEMO-0001 --user-id 42 --public-key demo\device.public.xml --balance 1500
if errorlevel 1 goto failed

echo 2. The shop opens in a window of its own.
start "Pavonix shop" /min %shop% --db demo\shop.db --port %port%
set tries=0

:again
set /a tries+=1
if %tries% gtr 20 goto failed
%client% list %call% --url %url%/shop/list --type 1 --max 3 --out demo\list.xml --force >nul 2>nul
if errorlevel 1 goto again

echo 3. A page of the catalogue and one good, each stored as a file.
%client% list %call% --url %url%/shop/list --type 1 --max 3 --out demo\list.xml --force
if errorlevel 1 goto failed
%client% good %call% --url %url%/shop/good --type 1 --id 1 --out demo\good.xml --force
if errorlevel 1 goto failed

echo 4. A purchase.
%client% buy %call% --url %url%/shop/buy --type 1 --id 1 --force
if errorlevel 1 goto failed
%shop% --db demo\shop.db purchases

echo.
echo The shop's page is %url%/ and the stored files are in %~dp0demo.
echo Close the window "Pavonix shop" to end the shop.
if not "%~2"=="no-browser" start "" %url%/
exit /b 0

:failed
echo The demonstration failed: see the message above.
exit /b 1
